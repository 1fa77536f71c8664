#include <gtest/gtest.h>
#include <gmock/gmock.h>

#include <string>

#include "tests/test_support.h"
#include "xbd/xbd.h"
#include "xbd/xbd_xml_parser.h"
#include "zel_basics/array.h"
#include "zel_basics/zel_error.h"
#include "zel_basics/zel_string.h"

namespace {

zel_string Z(const std::string &Text)
{
    return zel_string(Text.data(), static_cast<int>(Text.size()));
}

// The tree as a short text written by the test itself: name(attr="value" ...)[child,child].
std::string Dump(xbd_tag &Tag)
{
    xbd_file &File = *Tag.GetFile();
    std::string Text = ToStd(Tag.GetName());
    array<xbd_attribute> &Attributes = Tag.GetAttributes();
    if (Attributes.GetNumberOfElements() > 0) {
        Text += "(";
        for (int I = 0; I < Attributes.GetNumberOfElements(); I++) {
            if (I > 0)
                Text += " ";
            Text += ToStd(File.GetAttributeNames().GetName(Attributes[I].NameNum)) + "=\"" +
                    ToStd(File.GetValues().GetName(Attributes[I].ValueNum)) + "\"";
        }
        Text += ")";
    }
    array<ownership_pointer<xbd_tag>> &Children = Tag.GetChildren();
    if (Children.GetNumberOfElements() > 0) {
        Text += "[";
        for (int I = 0; I < Children.GetNumberOfElements(); I++) {
            if (I > 0)
                Text += ",";
            Text += Dump(*Children[I]);
        }
        Text += "]";
    }
    return Text;
}

// The top-level tags of a parse, in the form of Dump, joined by ",".
std::string Tree(const std::string &Text, bool Lenient = false)
{
    xbd_xml_parser Parser;
    ownership_pointer<xbd_file> File = Parser.ParseXML(Z(Text), Lenient);
    std::string Result;
    array<ownership_pointer<xbd_tag>> &Children = File->GetRootTag()->GetChildren();
    for (int I = 0; I < Children.GetNumberOfElements(); I++) {
        if (I > 0)
            Result += ",";
        Result += Dump(*Children[I]);
    }
    return Result;
}

std::string ParseError(const std::string &Text, bool Lenient = false)
{
    xbd_xml_parser Parser;
    return ZEL_ERROR_MESSAGE(Parser.ParseXML(Z(Text), Lenient));
}

// The value of the first attribute of the first top-level tag, as bytes.
std::string FirstValue(const std::string &Text)
{
    xbd_xml_parser Parser;
    ownership_pointer<xbd_file> File = Parser.ParseXML(Z(Text), false);
    xbd_tag &Tag = *File->GetRootTag()->GetChildren()[0];
    return ToStd(File->GetValues().GetName(Tag.GetAttributes()[0].ValueNum));
}

std::string Unescaped(const std::string &Text, char Quote = '"')
{
    xbd_xml_parser Parser;
    return ToStd(Parser.UnescapeXML(Z(Text), Quote));
}

std::string UnescapeError(const std::string &Text, char Quote = '"')
{
    xbd_xml_parser Parser;
    return ZEL_ERROR_MESSAGE(Parser.UnescapeXML(Z(Text), Quote));
}

const std::string BadEscape = "Error Parsing XML file: Invalid Escape Sequence (sequence starting with '&'): '";

} // namespace

// ---- the cases the format singles out ----

TEST(XbdXmlParser, EmptyInputGivesOnlyTheRoot)
{
    xbd_xml_parser Parser;
    ownership_pointer<xbd_file> File = Parser.ParseXML(zel_string(), false);
    reference_pointer<xbd_tag> Root = File->GetRootTag();
    EXPECT_EQ("RootTag", ToStd(Root->GetName()));
    EXPECT_EQ(0, Root->GetChildren().GetNumberOfElements());
    EXPECT_EQ(0, Root->GetAttributes().GetNumberOfElements());
    EXPECT_EQ(1, File->GetTagNames().GetNumberOfNames());
    EXPECT_EQ(0, File->GetAttributeNames().GetNumberOfNames());
    EXPECT_EQ(0, File->GetValues().GetNumberOfNames());
}

TEST(XbdXmlParser, TwoTopLevelTagsAreBothChildrenOfTheRoot)
{
    EXPECT_EQ("a,b[c]", Tree("<a/><b><c/></b>"));
}

TEST(XbdXmlParser, DoubleQuoteInsideSingleQuotedValueIsKept)
{
    EXPECT_EQ("x\"y", FirstValue("<a b='x\"y'/>"));
}

TEST(XbdXmlParser, DecimalEscape256IsAnError)
{
    EXPECT_EQ(BadEscape + "&#256;'\n(line 1, column 7)", ParseError("<a b=\"&#256;\"/>"));
}

TEST(XbdXmlParser, DecimalEscape255GivesByteFF)
{
    EXPECT_EQ(std::string(1, '\xFF'), FirstValue("<a b=\"&#255;\"/>"));
}

TEST(XbdXmlParser, UpperCaseAmpGivesAmpersand)
{
    EXPECT_EQ("&", FirstValue("<a b=\"&AMP;\"/>"));
}

TEST(XbdXmlParser, TagNameWithDotDashAndColonIsLegal)
{
    EXPECT_EQ("a.b-c:d", Tree("<a.b-c:d/>"));
}

TEST(XbdXmlParser, TagNameBeginningWithDigitIsStartCharacterError)
{
    EXPECT_EQ("ERROR - Invalid tag start-character: '1' (ASCII #49)\n(line 1, column 2)", ParseError("<1a/>"));
}

TEST(XbdXmlParser, TextBetweenTagsBecomesMarkupDataChild)
{
    EXPECT_EQ("a[b,*XMLMarkupDataTag(*XMLMarkedDataAttr=\"hello\"),c]", Tree("<a><b/>hello<c/></a>"));
}

TEST(XbdXmlParser, CarriageReturnLineFeedPairCountsOneLine)
{
    EXPECT_EQ("ERROR - Invalid tag start-character: '1' (ASCII #49)\n(line 2, column 2)", ParseError("<a>\r\n<1"));
}

TEST(XbdXmlParser, TabAtColumnFiveMovesToColumnEight)
{
    // "<abcd" fills columns 0 to 4, the tab stands at column 5 and the "?" lands on column 8.
    EXPECT_EQ("'?' in non-'?' tag\n(line 1, column 9)", ParseError("<abcd\t?>"));
}

// ---- every error text with its place ----

TEST(XbdXmlParserErrors, InvalidTagStartCharacter)
{
    EXPECT_EQ("ERROR - Invalid tag start-character: ' ' (ASCII #32)\n(line 1, column 2)", ParseError("< a>"));
    EXPECT_EQ("ERROR - Invalid tag start-character: '>' (ASCII #62)\n(line 1, column 2)", ParseError("<>"));
    EXPECT_EQ("ERROR - Invalid tag start-character: '-' (ASCII #45)\n(line 1, column 6)", ParseError("<a></-a>"));
    EXPECT_EQ("ERROR - Invalid tag start-character: ASCII #10\n(line 1, column 2)", ParseError("<\n"));
    EXPECT_EQ("ERROR - Invalid tag start-character: '!' (ASCII #33)\n(line 1, column 6)", ParseError("<a></!a>"));
}

TEST(XbdXmlParserErrors, CommentNeverClosedIsReportedAtItsStart)
{
    EXPECT_EQ("Comment was never closed.\n(line 2, column 3)", ParseError("<a>\n  <!-- <b/> --"));
}

TEST(XbdXmlParserErrors, CommentNeedsItsOwnClosingDashes)
{
    // The "-->" must follow the opening "<!--" in full; "<!-->" has none.
    EXPECT_EQ("Comment was never closed.\n(line 1, column 1)", ParseError("<!-->"));
}

TEST(XbdXmlParserErrors, DeclarationNeverClosedIsReportedAtItsStart)
{
    EXPECT_EQ("<!Blah... was never closed.\n(line 1, column 5)", ParseError("<a/><!DOCTYPE x <y>"));
    EXPECT_EQ("<!Blah... was never closed.\n(line 1, column 1)", ParseError("<!"));
    EXPECT_EQ("<!Blah... was never closed.\n(line 1, column 1)", ParseError("<!-"));
}

TEST(XbdXmlParserErrors, InvalidCharacterAfterSlash)
{
    EXPECT_EQ("Invalid Character after / in open-close tag: ' ' (ASCII #32)\n(line 1, column 4)", ParseError("<a/ >"));
    EXPECT_EQ("Invalid Character after / in open-close tag: ASCII #9\n(line 1, column 10)",
              ParseError("<a b='1'/\t>"));
}

TEST(XbdXmlParserErrors, SecondSlashInCloseTag)
{
    EXPECT_EQ("Invalid second / in close tag.\n(line 1, column 7)", ParseError("<a></a/>"));
    EXPECT_EQ("Invalid second / in close tag.\n(line 1, column 3)", ParseError("<//a>"));
}

TEST(XbdXmlParserErrors, QuestionMarkInOrdinaryTag)
{
    EXPECT_EQ("'?' in non-'?' tag\n(line 1, column 4)", ParseError("<a ?>"));
    EXPECT_EQ("'?' in non-'?' tag\n(line 1, column 7)", ParseError("<a></a?>"));
}

TEST(XbdXmlParserErrors, AttributeInCloseTag)
{
    EXPECT_EQ("Attributes not allowed in close tags.\n(line 1, column 8)", ParseError("<a></a b='1'>"));
}

TEST(XbdXmlParserErrors, InvalidCharacterInsideTag)
{
    EXPECT_EQ("Invalid character inside tag: '<' (ASCII #60)\n(line 1, column 4)", ParseError("<a <b>"));
    EXPECT_EQ("Invalid character inside tag: '1' (ASCII #49)\n(line 1, column 4)", ParseError("<a 1='x'>"));
    EXPECT_EQ("Invalid character inside tag: '\"' (ASCII #34)\n(line 1, column 9)", ParseError("<a b='1'\"/>"));
    // A "?" that does not close its "?" tag is a stray byte.
    EXPECT_EQ("Invalid character inside tag: '?' (ASCII #63)\n(line 1, column 4)", ParseError("<?x? >"));
}

TEST(XbdXmlParserErrors, AttributeNameNotFollowedByEquals)
{
    EXPECT_EQ("Attribute name not followed by '=' (followed by: 'c' (ASCII #99))\n(line 1, column 6)",
              ParseError("<a b c='1'/>"));
    EXPECT_EQ("Attribute name not followed by '=' (followed by: '>' (ASCII #62))\n(line 1, column 5)",
              ParseError("<a b>"));
}

TEST(XbdXmlParserErrors, EqualsNotFollowedByQuote)
{
    EXPECT_EQ("ERROR - Attribute '=' not followed by \" or ' (followed by: '1' (ASCII #49))\n(line 1, column 8)",
              ParseError("<a b = 1/>"));
    EXPECT_EQ("ERROR - Attribute '=' not followed by \" or ' (followed by: '>' (ASCII #62))\n(line 1, column 6)",
              ParseError("<a b=>"));
}

TEST(XbdXmlParserErrors, CloseTagWithNothingOpen)
{
    EXPECT_EQ("Close tag </a> has no matching open tag.\n(line 1, column 1)", ParseError("</a>"));
    EXPECT_EQ("Close tag </a> has no matching open tag.\n(line 2, column 1)", ParseError("<a></a>\n</a>"));
}

TEST(XbdXmlParserErrors, CloseTagOfAnotherName)
{
    EXPECT_EQ("Close tag </a> does not match open tag <b>\n(line 1, column 7)", ParseError("<a><b></a></b>"));
}

TEST(XbdXmlParserErrors, UnclosedTagsAtEndAreListedOutermostFirst)
{
    EXPECT_EQ("End of file reached with unclosed tags: a b \n(line 2, column 1)", ParseError("<a><c/><b>\n"));
}

TEST(XbdXmlParserErrors, TagCutOffByTheEndIsUnclosed)
{
    EXPECT_EQ("End of file reached with unclosed tags: a \n(line 1, column 3)", ParseError("<a"));
    EXPECT_EQ("End of file reached with unclosed tags: a \n(line 1, column 8)", ParseError("<a b='x"));
    EXPECT_EQ("End of file reached with unclosed tags: a \n(line 1, column 4)", ParseError("<a/"));
    EXPECT_EQ("End of file reached with unclosed tags: a \n(line 1, column 5)", ParseError("<a b"));
    EXPECT_EQ("End of file reached with unclosed tags: a \n(line 1, column 6)", ParseError("<a b="));
    EXPECT_EQ("End of file reached with unclosed tags: ?x \n(line 1, column 5)", ParseError("<?x?"));
    // A close tag takes effect at its ">", so one that the end cuts off has closed nothing.
    EXPECT_EQ("End of file reached with unclosed tags: a \n(line 1, column 7)", ParseError("<a></a"));
    // Cut off before its name, a tag has no name to list.
    EXPECT_EQ("End of file reached with unclosed tags: \n(line 1, column 2)", ParseError("<"));
    EXPECT_EQ("End of file reached with unclosed tags: \n(line 1, column 3)", ParseError("</"));
}

TEST(XbdXmlParserErrors, BadEscapeInValue)
{
    EXPECT_EQ(BadEscape + "&bogus;'\n(line 1, column 8)", ParseError("<a b='x&bogus;y'/>"));
}

TEST(XbdXmlParserErrors, LtMismatchHasItsOwnText)
{
    EXPECT_EQ("lt doesn't compare\n(line 2, column 4)", ParseError("<a\nb='&lx;'/>"));
}

TEST(XbdXmlParserErrors, BackslashedQuoteIsARawQuoteInTheValue)
{
    // The backslash keeps the quote from ending the value; the value then holds a bare quote.
    EXPECT_EQ("ERROR - Quote found in XML string\n(line 1, column 9)", ParseError("<a b=\"x\\\"y\"/>"));
}

TEST(XbdXmlParserErrors, PlacesAfterSeveralKindsOfLineBreak)
{
    // LF, LF: two lines.
    EXPECT_THAT(ParseError("\n\n<1"), testing::EndsWith("\n(line 3, column 2)"));
    // CR, CR: two lines.
    EXPECT_THAT(ParseError("\r\r<1"), testing::EndsWith("\n(line 3, column 2)"));
    // LF CR is a pair as well as CR LF.
    EXPECT_THAT(ParseError("\n\r<1"), testing::EndsWith("\n(line 2, column 2)"));
    // CR LF CR LF: two pairs.
    EXPECT_THAT(ParseError("\r\n\r\n<1"), testing::EndsWith("\n(line 3, column 2)"));
    // LF CR LF: a pair, then a new line.
    EXPECT_THAT(ParseError("\n\r\n<1"), testing::EndsWith("\n(line 3, column 2)"));
}

TEST(XbdXmlParserErrors, HeldLineFeedPairsWithCarriageReturnLaterOnTheNextLine)
{
    // The CR after "ab" is taken as the second half of the LF before it: the line count stays, the
    // column starts again.
    EXPECT_EQ("ERROR - Invalid tag start-character: '1' (ASCII #49)\n(line 2, column 2)", ParseError("\nab\r<1"));
    // After a CR the same second CR is a line of its own.
    EXPECT_EQ("ERROR - Invalid tag start-character: '1' (ASCII #49)\n(line 3, column 2)", ParseError("\rab\r<1"));
}

TEST(XbdXmlParserErrors, TabsMoveToTheNextMultipleOfFour)
{
    // Tabs at columns 0, 6 and 13 move to 4, 8 and 16; the "?" stands at column 16.
    EXPECT_EQ("'?' in non-'?' tag\n(line 1, column 17)", ParseError("\t<a\tx='1'\t?>"));
    // A tab at column 4 moves on to 8.
    EXPECT_EQ("'?' in non-'?' tag\n(line 1, column 9)", ParseError("<abc\t?>"));
}

TEST(XbdXmlParserErrors, ColumnStartsAgainAfterLineBreak)
{
    EXPECT_EQ("Invalid character inside tag: '<' (ASCII #60)\n(line 3, column 4)", ParseError("<a>\n<b/>\n<c <"));
}

TEST(XbdXmlParserErrors, FailedParseLeavesNoObjects)
{
    xbd_xml_parser Parser;
    int32_t LiveBefore = ObjectsCreated - ObjectsDestroyed;
    EXPECT_EQ("Close tag </c> does not match open tag <b>\n(line 1, column 31)",
              ParseError("<a x='1'><b y='2'>text<d/><e/></c>"));
    EXPECT_EQ(LiveBefore, ObjectsCreated - ObjectsDestroyed);
}

// ---- character data ----

TEST(XbdXmlParserData, LeadingWhiteSpaceIsSkippedAndTheRestKept)
{
    EXPECT_EQ("a[*XMLMarkupDataTag(*XMLMarkedDataAttr=\"x  y \n\t\")]", Tree("<a> \r\n\tx  y \n\t</a>"));
}

TEST(XbdXmlParserData, WhiteSpaceAloneMakesNoData)
{
    EXPECT_EQ("a[b]", Tree(" \t\r\n<a>\n  <b/>\n</a>\n"));
}

TEST(XbdXmlParserData, DataIsKeptRawWithoutUnescaping)
{
    EXPECT_EQ("a[*XMLMarkupDataTag(*XMLMarkedDataAttr=\"&amp; &bogus; 'x\" \\\")]", Tree("<a>&amp; &bogus; 'x\" \\</a>"));
}

TEST(XbdXmlParserData, DataBeforeTheFirstTagIsAChildOfTheRoot)
{
    EXPECT_EQ("*XMLMarkupDataTag(*XMLMarkedDataAttr=\"head\"),a", Tree("head<a/>"));
}

TEST(XbdXmlParserData, DataThatTheEndCutsOffIsLost)
{
    EXPECT_EQ("a", Tree("<a/>tail"));
    EXPECT_EQ("", Tree("only text"));
}

TEST(XbdXmlParserData, DataKeepsItsPlaceAmongSiblingsAndComments)
{
    EXPECT_EQ("a[*XMLMarkupDataTag(*XMLMarkedDataAttr=\"one\"),*XMLMarkupDataTag(*XMLMarkedDataAttr=\"two \"),b]",
              Tree("<a>one<!-- c -->two <b/></a>"));
}

TEST(XbdXmlParserData, DataKeepsZeroBytes)
{
    xbd_xml_parser Parser;
    ownership_pointer<xbd_file> File = Parser.ParseXML(Z(std::string("<a>x\0y</a>", 10)), false);
    xbd_tag &Data = *File->GetRootTag()->GetChildren()[0]->GetChildren()[0];
    EXPECT_EQ(std::string("x\0y", 3), ToStd(Data.GetAttribute("*XMLMarkedDataAttr", "")));
}

TEST(XbdXmlParserData, PseudoNamesAreOnlyInternedWhenUsed)
{
    xbd_xml_parser Parser;
    ownership_pointer<xbd_file> File = Parser.ParseXML(Z("<a><b/></a>"), false);
    EXPECT_EQ(3, File->GetTagNames().GetNumberOfNames());
    EXPECT_EQ(-1, File->GetTagNames().GetNameNum("*XMLMarkupDataTag"));
    EXPECT_EQ(-1, File->GetTagNames().GetNameNum("*XMLCommentTag"));
    EXPECT_EQ(0, File->GetAttributeNames().GetNumberOfNames());
}

// ---- comments, declarations, processing instructions ----

TEST(XbdXmlParserMarkup, CommentsAreDropped)
{
    EXPECT_EQ("a[b]", Tree("<!-- top --><a><!-- <c/> -- - --><b/><!----></a><!-- end -->"));
}

TEST(XbdXmlParserMarkup, DeclarationsAreDroppedWhenAnglesBalance)
{
    EXPECT_EQ("a", Tree("<!DOCTYPE a [<!ENTITY x '<y>'>]><a/><![CDATA[ x ]]>"));
}

TEST(XbdXmlParserMarkup, ProcessingInstructionIsATagClosedByQuestionMark)
{
    EXPECT_EQ("?xml(version=\"1.0\" encoding=\"UTF-8\"),a", Tree("<?xml version=\"1.0\" encoding='UTF-8'?>\n<a/>"));
    EXPECT_EQ("?x", Tree("<?x?>"));
}

TEST(XbdXmlParserMarkup, ProcessingInstructionLeftOpenByPlainClose)
{
    EXPECT_EQ("End of file reached with unclosed tags: ?x \n(line 1, column 9)", ParseError("<?x><a/>"));
}

TEST(XbdXmlParserMarkup, WhiteSpaceInsideTags)
{
    EXPECT_EQ("a(b=\"1\" c=\"2\")[d]", Tree("<a\n\tb = '1'\r\n c=\t\"2\" ><d\n/></a\n>"));
}

// ---- attributes ----

TEST(XbdXmlParserAttributes, OrderAndDuplicatesAreKept)
{
    xbd_xml_parser Parser;
    ownership_pointer<xbd_file> File = Parser.ParseXML(Z("<a z='1' y='2' z='3'/>"), false);
    reference_pointer<xbd_tag> A = File->GetRootTag()->GetChildren()[0];
    EXPECT_EQ("a(z=\"1\" y=\"2\" z=\"3\")", Dump(*A));
    EXPECT_EQ("1", ToStd(A->GetAttribute("z", "none")));
}

TEST(XbdXmlParserAttributes, NamesMayHoldEveryNameCharacter)
{
    EXPECT_EQ("a(_x.y-z:w9=\"v\")", Tree("<a _x.y-z:w9='v'/>"));
}

TEST(XbdXmlParserAttributes, EmptyValueIsPresent)
{
    xbd_xml_parser Parser;
    ownership_pointer<xbd_file> File = Parser.ParseXML(Z("<a flag=''/>"), false);
    EXPECT_TRUE(File->GetRootTag()->GetChildren()[0]->HasAttribute("flag"));
    EXPECT_EQ("", ToStd(File->GetRootTag()->GetChildren()[0]->GetAttribute("flag", "default")));
}

TEST(XbdXmlParserAttributes, BackslashKeepsItsBytes)
{
    EXPECT_EQ("x\\'y", FirstValue("<a b=\"x\\'y\"/>"));
    EXPECT_EQ("x\\\\", FirstValue("<a b=\"x\\\\\"/>"));
    EXPECT_EQ("\\n", FirstValue("<a b='\\n'/>"));
}

TEST(XbdXmlParserAttributes, ValueCanSpanLinesAndHoldAngles)
{
    EXPECT_EQ("1\n<2>/", FirstValue("<a b='1\n<2>/'/>"));
}

TEST(XbdXmlParserAttributes, EveryByteThroughDecimalEscapes)
{
    std::string Text = "<a b='";
    std::string Expected;
    for (int Byte = 0; Byte < 256; Byte++) {
        Text += "&#" + std::to_string(Byte) + ";";
        Expected += static_cast<char>(Byte);
    }
    Text += "'/>";
    EXPECT_EQ(Expected, FirstValue(Text));
}

TEST(XbdXmlParserAttributes, ZeroEscapeGivesZeroByteInsideTheValue)
{
    EXPECT_EQ(std::string("a\0b", 3), FirstValue("<a b='a&#0;b'/>"));
}

TEST(XbdXmlParserAttributes, RawZeroByteEndsTheValue)
{
    EXPECT_EQ("x", FirstValue(std::string("<a b='x\0y'/>", 12)));
}

TEST(XbdXmlParserAttributes, AllNamedEscapes)
{
    EXPECT_EQ("<>&'\"", FirstValue("<a b=\"&lt;&GT;&Amp;&apos;&quot;\"/>"));
}

TEST(XbdXmlParserAttributes, EqualValuesShareOneValueNumber)
{
    xbd_xml_parser Parser;
    ownership_pointer<xbd_file> File = Parser.ParseXML(Z("<a b='9' c='9'/>"), false);
    array<xbd_attribute> &Attributes = File->GetRootTag()->GetChildren()[0]->GetAttributes();
    EXPECT_EQ(Attributes[0].ValueNum, Attributes[1].ValueNum);
    EXPECT_EQ(1, File->GetValues().GetNumberOfNames());
}

// ---- lenient mode ----

TEST(XbdXmlParserLenient, UnquotedValuesRunToWhiteSpaceOrAngle)
{
    EXPECT_EQ("a(b=\"x\" c=\"y'z\" d=\"<\")[e]", Tree("<a b=x c=y'z\td=&lt;><e/></a>", true));
}

TEST(XbdXmlParserLenient, UnquotedValueKeepsSlashAndLeavesTagOpen)
{
    EXPECT_EQ("a(b=\"x/\")[c]", Tree("<a b=x/><c/></a>", true));
}

TEST(XbdXmlParserLenient, EmptyUnquotedValue)
{
    EXPECT_EQ("a(b=\"\")", Tree("<a b= ></a>", true));
}

TEST(XbdXmlParserLenient, QuotedValuesAreReadAsUsual)
{
    EXPECT_EQ("a(b=\"x y\")", Tree("<a b='x y'/>", true));
}

TEST(XbdXmlParserLenient, UnquotedValueIsRefusedWhenStrict)
{
    EXPECT_EQ("ERROR - Attribute '=' not followed by \" or ' (followed by: 'x' (ASCII #120))\n(line 1, column 6)",
              ParseError("<a b=x></a>", false));
}

TEST(XbdXmlParserLenient, CloseTagPopsToTheMatchingName)
{
    EXPECT_EQ("a[b[c]],d", Tree("<a><b><c></a><d/>", true));
}

TEST(XbdXmlParserLenient, CloseTagPopsToTheNearestOfThatName)
{
    EXPECT_EQ("a[a[b[c]],d]", Tree("<a><a><b><c></a><d/></a>", true));
}

TEST(XbdXmlParserLenient, CloseTagMismatchIsRefusedWhenStrict)
{
    EXPECT_EQ("Close tag </a> does not match open tag <c>\n(line 1, column 10)", ParseError("<a><b><c></a>", false));
}

TEST(XbdXmlParserLenient, CloseTagWithoutThatNameOpenHasNoMatch)
{
    EXPECT_EQ("Close tag </c> has no matching open tag.\n(line 1, column 7)", ParseError("<a><b></c>", true));
}

TEST(XbdXmlParserLenient, UnclosedTagsAreStillRefused)
{
    EXPECT_EQ("End of file reached with unclosed tags: a \n(line 1, column 4)", ParseError("<a>", true));
}

// ---- the escape routine on its own ----

TEST(XbdXmlUnescape, PlainTextCopiesThrough)
{
    EXPECT_EQ("plain text; a=b", Unescaped("plain text; a=b"));
    EXPECT_EQ("", Unescaped(""));
}

TEST(XbdXmlUnescape, NamedEscapesInAnyCase)
{
    EXPECT_EQ("&&&<<>>''\"\"", Unescaped("&amp;&AMP;&aMp;&lt;&LT;&gt;&Gt;&apos;&APOS;&quot;&QuOt;"));
}

TEST(XbdXmlUnescape, DecimalEscapes)
{
    EXPECT_EQ("A", Unescaped("&#65;"));
    EXPECT_EQ("A", Unescaped("&#0000000000000000065;"));
    EXPECT_EQ(std::string("\0", 1), Unescaped("&#0;"));
    EXPECT_EQ(std::string("x\0y", 3), Unescaped("x&#0;y"));
}

TEST(XbdXmlUnescape, DecimalEscapeErrors)
{
    EXPECT_EQ(BadEscape + "&#256;'", UnescapeError("&#256;"));
    EXPECT_EQ(BadEscape + "&#99999999999999999999;'", UnescapeError("&#99999999999999999999;"));
    EXPECT_EQ(BadEscape + "&#;'", UnescapeError("&#;"));
    EXPECT_EQ(BadEscape + "&#x41;'", UnescapeError("&#x41;"));
    EXPECT_EQ(BadEscape + "&#12'", UnescapeError("&#12"));
    EXPECT_EQ(BadEscape + "&#12 x'", UnescapeError("&#12 x"));
}

TEST(XbdXmlUnescape, NamedEscapeErrors)
{
    EXPECT_EQ(BadEscape + "&'", UnescapeError("a&"));
    EXPECT_EQ(BadEscape + "&a'", UnescapeError("&a"));
    EXPECT_EQ(BadEscape + "&ap;'", UnescapeError("&ap;"));
    EXPECT_EQ(BadEscape + "&am;'", UnescapeError("&am;"));
    EXPECT_EQ(BadEscape + "&amp'", UnescapeError("&amp"));
    EXPECT_EQ(BadEscape + "&gt'", UnescapeError("&gt"));
    EXPECT_EQ(BadEscape + "&quo;'", UnescapeError("&quo;"));
    EXPECT_EQ(BadEscape + "&nbsp;'", UnescapeError("x&nbsp;y"));
    EXPECT_EQ(BadEscape + "& b;'", UnescapeError("a & b;c"));
}

TEST(XbdXmlUnescape, LtMismatch)
{
    EXPECT_EQ("lt doesn't compare", UnescapeError("&lx;"));
    EXPECT_EQ("lt doesn't compare", UnescapeError("&l"));
    EXPECT_EQ("lt doesn't compare", UnescapeError("&lt"));
}

TEST(XbdXmlUnescape, GivenQuoteIsAnError)
{
    EXPECT_EQ("ERROR - Quote found in XML string", UnescapeError("a\"b", '"'));
    EXPECT_EQ("ERROR - Quote found in XML string", UnescapeError("a'b", '\''));
    EXPECT_EQ("a'b", Unescaped("a'b", '"'));
    EXPECT_EQ("a\"b", Unescaped("a\"b", '\''));
}

TEST(XbdXmlUnescape, ZeroQuoteAllowsBothQuotes)
{
    EXPECT_EQ("'\"", Unescaped("'\"", 0));
}

TEST(XbdXmlUnescape, RawZeroByteEndsTheWalk)
{
    EXPECT_EQ("ab", Unescaped(std::string("ab\0&bad", 7)));
}

TEST(XbdXmlUnescape, EachResultIsIndependentOfTheSharedBuffer)
{
    xbd_xml_parser Parser;
    zel_string First = Parser.UnescapeXML(Z("long &amp; longer"), '"');
    zel_string Second = Parser.UnescapeXML(Z("&lt;"), '"');
    EXPECT_EQ("long & longer", ToStd(First));
    EXPECT_EQ("<", ToStd(Second));
}

// ---- describing bytes ----

TEST(XbdXmlDescribeCharacter, ControlBytesAsNumbers)
{
    EXPECT_EQ("ASCII #0", ToStd(xbd_xml_parser::DescribeCharacter('\0')));
    EXPECT_EQ("ASCII #9", ToStd(xbd_xml_parser::DescribeCharacter('\t')));
    EXPECT_EQ("ASCII #31", ToStd(xbd_xml_parser::DescribeCharacter('\x1F')));
}

TEST(XbdXmlDescribeCharacter, PrintableBytesQuotedWithNumber)
{
    EXPECT_EQ("' ' (ASCII #32)", ToStd(xbd_xml_parser::DescribeCharacter(' ')));
    EXPECT_EQ("'A' (ASCII #65)", ToStd(xbd_xml_parser::DescribeCharacter('A')));
    EXPECT_EQ("'~' (ASCII #126)", ToStd(xbd_xml_parser::DescribeCharacter('~')));
    EXPECT_EQ("'\x7F' (ASCII #127)", ToStd(xbd_xml_parser::DescribeCharacter('\x7F')));
}

TEST(XbdXmlDescribeCharacter, HighBytesReadAsUnsigned)
{
    EXPECT_EQ("'\x80' (ASCII #128)", ToStd(xbd_xml_parser::DescribeCharacter('\x80')));
    EXPECT_EQ("'\xFF' (ASCII #255)", ToStd(xbd_xml_parser::DescribeCharacter('\xFF')));
}

TEST(XbdXmlDescribeCharacter, HighByteInAnErrorText)
{
    EXPECT_EQ("ERROR - Invalid tag start-character: '\xE9' (ASCII #233)\n(line 1, column 2)", ParseError("<\xE9t\xE9/>"));
}

// ---- depth and reuse ----

TEST(XbdXmlParserDepth, DeepNestingParsesWithoutRecursion)
{
    const int Depth = 200000;
    std::string Text;
    for (int I = 0; I < Depth; I++)
        Text += "<a>";
    for (int I = 0; I < Depth; I++)
        Text += "</a>";
    xbd_xml_parser Parser;
    ownership_pointer<xbd_file> File = Parser.ParseXML(Z(Text), false);
    int Found = 0;
    reference_pointer<xbd_tag> Tag = File->GetRootTag();
    while (Tag->GetChildren().GetNumberOfElements() == 1) {
        Tag = Tag->GetChildren()[0];
        Found++;
    }
    EXPECT_EQ(Depth, Found);
}

TEST(XbdXmlParserDepth, DeepUnclosedNestingFailsCleanly)
{
    const int Depth = 200000;
    std::string Text;
    for (int I = 0; I < Depth; I++)
        Text += "<a>";
    std::string Message = ParseError(Text);
    std::string Expected = "End of file reached with unclosed tags: ";
    for (int I = 0; I < Depth; I++)
        Expected += "a ";
    Expected += "\n(line 1, column " + std::to_string(3 * Depth + 1) + ")";
    EXPECT_EQ(Expected, Message);
}

TEST(XbdXmlParserReuse, OneParserParsesManyTimes)
{
    xbd_xml_parser Parser;
    ownership_pointer<xbd_file> First = Parser.ParseXML(Z("<a b='&lt;1'/>"), false);
    EXPECT_EQ("Close tag </x> has no matching open tag.\n(line 1, column 1)",
              ZEL_ERROR_MESSAGE(Parser.ParseXML(Z("</x>"), false)));
    ownership_pointer<xbd_file> Second = Parser.ParseXML(Z("<c d='&gt;2'/>"), false);
    EXPECT_EQ("a(b=\"<1\")", Dump(*First->GetRootTag()->GetChildren()[0]));
    EXPECT_EQ("c(d=\">2\")", Dump(*Second->GetRootTag()->GetChildren()[0]));
}
