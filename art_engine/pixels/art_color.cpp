#include "art_engine/pixels/art_color.h"

namespace {

const double ByteToUnit = 0.00392156862745098;

double ReadChannel(const zel_string &Digits, int Position)
{
    if (Digits.GetLength() - Position < 2)
        return 1.0;
    return zel_string(Digits.GetString() + Position, 2).ToInt(16) * ByteToUnit;
}

void WriteChannel(double Value, zel_string &Text)
{
    static const char HexDigits[] = "0123456789abcdef";
    double Scaled = Value * 255;
    // Out of range a channel would give the digits of some other colour; the nearest byte is kinder.
    int Byte = Scaled <= 0 ? 0 : (Scaled >= 255 ? 255 : static_cast<int>(Scaled));
    char Pair[2] = {HexDigits[Byte >> 4], HexDigits[Byte & 15]};
    Text += zel_string(Pair, 2);
}

uint8_t ChannelToByte(double Value) { return static_cast<uint8_t>(static_cast<int>(Value * 255.0 + 0.5)); }

} // namespace

agg::rgba ArtTextToColor(const zel_string &Text)
{
    zel_string Digits = Text.GetLength() > 0 && Text[0] == '#' ? Text.RightOf(0) : Text;
    return agg::rgba(ReadChannel(Digits, 0), ReadChannel(Digits, 2), ReadChannel(Digits, 4), ReadChannel(Digits, 6));
}

zel_string ArtColorToText(const agg::rgba &Color)
{
    zel_string Text;
    WriteChannel(Color.r, Text);
    WriteChannel(Color.g, Text);
    WriteChannel(Color.b, Text);
    WriteChannel(Color.a, Text);
    return Text;
}

zel_string ArtColorToDebugText(const agg::rgba &Color)
{
    return "(r=" + zel_string::FromDouble(Color.r) + ", g=" + zel_string::FromDouble(Color.g) +
           ", b=" + zel_string::FromDouble(Color.b) + ", a=" + zel_string::FromDouble(Color.a) + ")";
}

agg::rgba8 ArtColorToRgba8(const agg::rgba &Color)
{
    return agg::rgba8(ChannelToByte(Color.r), ChannelToByte(Color.g), ChannelToByte(Color.b), ChannelToByte(Color.a));
}
