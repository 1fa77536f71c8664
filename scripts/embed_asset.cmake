# Writes a C++ source that holds the bytes of INPUT as the array SYMBOL, with SYMBOL_SIZE its
# length, so that a document of assets/ is part of the library. Run by the build with cmake -P.
file(READ "${INPUT}" CONTENT HEX)
string(LENGTH "${CONTENT}" HEX_LENGTH)
math(EXPR SIZE "${HEX_LENGTH} / 2")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," BYTES "${CONTENT}")
string(REGEX REPLACE "((0x..,){24})" "\\1\n    " BYTES "${BYTES}")
file(WRITE "${OUTPUT}"
  "// Made by the build from ${INPUT}; do not edit.\n"
  "#include <cstddef>\n\n"
  "extern const unsigned char ${SYMBOL}[];\n"
  "extern const size_t ${SYMBOL}_SIZE;\n"
  "const unsigned char ${SYMBOL}[] = {\n    ${BYTES}\n};\n"
  "const size_t ${SYMBOL}_SIZE = ${SIZE};\n")
