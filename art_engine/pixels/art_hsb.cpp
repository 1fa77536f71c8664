#include "art_engine/pixels/art_hsb.h"

#include <cmath>

void RgbToHsb(double R, double G, double B, double &H, double &S, double &V)
{
    double Max = R > G ? (R > B ? R : B) : (G > B ? G : B);
    double Min = R < G ? (R < B ? R : B) : (G < B ? G : B);
    double Degrees = 0;
    if (Max != Min) {
        double D = Max - Min;
        if (R != Max) {
            if (G != Max)
                Degrees = (R - G) / D * 60 + 240;
            else
                Degrees = (B - R) / D * 60 + 120;
        } else {
            Degrees = (G - B) / D * 60;
            if (G < B)
                Degrees += 360;
        }
    }
    H = Degrees * 0.002777777777777778;
    V = Max;
    S = Max == 0 ? 0 : 1 - Min / Max;
}

void HsbToRgb(double H, double S, double V, double &R, double &G, double &B)
{
    double X = std::fmod(H * 360, 360);
    if (X < 0)
        X += 360;
    X = X * 0.016666666666666666;
    int Sector = static_cast<int>(X) % 6;
    double F = X - Sector;
    double P = (1 - S) * V;
    double Q = (1 - S * F) * V;
    double W = (1 - (1 - F) * S) * V;
    switch (Sector) {
    case 0: R = V; G = W; B = P; break;
    case 1: R = Q; G = V; B = P; break;
    case 2: R = P; G = V; B = W; break;
    case 3: R = P; G = Q; B = V; break;
    case 4: R = W; G = P; B = V; break;
    default: R = V; G = P; B = Q; break;
    }
}
