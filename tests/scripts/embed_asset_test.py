"""The asset embedder: a document's named pictures arrive as their bytes in the markup's text form,
and the generated source holds the document's text exactly."""
import os
import re
import subprocess
import sys
import tempfile
import unittest

REPOSITORY = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
EMBEDDER = os.path.join(REPOSITORY, 'scripts', 'embed-asset')


def embed(folder, document):
    source = os.path.join(folder, 'document.xml')
    with open(source, 'w', encoding='latin-1') as text:
        text.write(document)
    target = os.path.join(folder, 'document.cpp')
    result = subprocess.run([sys.executable, EMBEDDER, source, target, 'TEST_ASSET'], capture_output=True,
                            text=True)
    return result, target


def array_bytes(target):
    with open(target, encoding='ascii') as generated:
        code = generated.read()
    body = code[code.index('TEST_ASSET[] = {'):code.index('};')]
    data = bytes(int(value, 16) for value in re.findall(r'0x([0-9a-f]{2}),', body))
    size = int(re.search(r'TEST_ASSET_SIZE = (\d+);', code).group(1))
    return data, size


def unescape(text):
    return re.sub(r'&#(\d+);', lambda match: chr(int(match.group(1))), text).encode('latin-1')


class embed_asset_test(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        os.makedirs(os.path.join(self.folder.name, 'images'))

    def test_a_document_without_pictures_is_held_byte_for_byte(self):
        document = '<art_file w_val="10">\n <children/>\n</art_file>\n'
        result, target = embed(self.folder.name, document)
        self.assertEqual(result.returncode, 0, result.stderr)
        data, size = array_bytes(target)
        self.assertEqual(data, document.encode('latin-1'))
        self.assertEqual(size, len(data))

    def test_every_byte_of_a_picture_comes_back_from_its_escaped_form(self):
        picture = bytes(range(256)) + b'&<>"\'\\ plain text'
        with open(os.path.join(self.folder.name, 'images', 'all.bin'), 'wb') as image:
            image.write(picture)
        result, target = embed(self.folder.name, '<bitmaps><bitmap bitmap_id="0" '
                                                 'pixel_data_file="images/all.bin"/></bitmaps>')
        self.assertEqual(result.returncode, 0, result.stderr)
        text = array_bytes(target)[0].decode('latin-1')
        value = re.fullmatch(r'<bitmaps><bitmap bitmap_id="0" pixel_data="([^"]*)"/></bitmaps>', text)
        self.assertIsNotNone(value, text[:200])
        self.assertEqual(unescape(value.group(1)), picture)
        # Only printable ASCII stands for itself, and never a character the markup gives a meaning.
        self.assertTrue(all(32 <= ord(c) < 127 and c not in '<>"\'\\' for c in value.group(1)))

    def test_a_missing_picture_fails_with_its_name(self):
        result, target = embed(self.folder.name, '<bitmap pixel_data_file="images/none.png"/>')
        self.assertNotEqual(result.returncode, 0)
        self.assertIn('images/none.png', result.stderr)
        self.assertFalse(os.path.exists(target))


if __name__ == '__main__':
    unittest.main()
