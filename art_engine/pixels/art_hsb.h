#pragma once

// Hue, saturation and brightness, each 0 to 1, against red, green and blue, each 0 to 1. Gradients
// blend hues through these; a hue beyond 0 to 1 wraps round the colour wheel.

void RgbToHsb(double R, double G, double B, double &H, double &S, double &V);
void HsbToRgb(double H, double S, double V, double &R, double &G, double &B);
