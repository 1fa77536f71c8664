#include "art_engine/geometry/art_attribute_text.h"

zel_string ArtRealToText(double Value)
{
    return zel_string::Format("%g", Value);
}

zel_string ArtPointToText(point2d Value)
{
    return zel_string("(") + ArtRealToText(Value.X) + "," + ArtRealToText(Value.Y) + ")";
}

double ArtTextToReal(const zel_string &Text, double Default)
{
    return Text.IsEmpty() ? Default : Text.ToFloat();
}

point2d ArtTextToPoint(const zel_string &Text)
{
    int Open = Text.Find('(');
    int Comma = Text.Find(',', Open + 1);
    int Close = Text.Find(')', Comma + 1);
    return point2d(Text.Mid(Open + 1, Comma - 1).ToFloat(), Text.Mid(Comma + 1, Close - 1).ToFloat());
}
