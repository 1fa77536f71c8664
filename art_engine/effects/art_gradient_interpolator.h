#pragma once

#include <climits>
#include <cstdint>

#include <agg_trans_affine.h>

// Maps the pixels of a span through a matrix to positions with 8 fractional bits: the ends of the
// span are transformed exactly and the pixels between are reached by whole-number steps, as AGG's
// linear span interpolator does, with the same rounding and the same steps. Unlike it, this one
// stays defined for any matrix: a position that is not finite or does not fit an int reads as the
// most negative int, the value the processor's own conversion gives, and the steps are taken in 64
// bits so that spans between such far ends cannot overflow. A gradient of no length, whose inverse
// matrix is all NaN, thus draws every pixel at one far point.
class art_gradient_interpolator
{
public:
    enum
    {
        subpixel_shift = 8,
        subpixel_scale = 1 << subpixel_shift
    };

    explicit art_gradient_interpolator(const agg::trans_affine &Transformer) : Transformer(Transformer) {}

    void begin(double X, double Y, unsigned Length)
    {
        double TX = X;
        double TY = Y;
        Transformer.transform(&TX, &TY);
        int64_t X1 = ToSubpixels(TX);
        int64_t Y1 = ToSubpixels(TY);
        TX = X + Length;
        TY = Y;
        Transformer.transform(&TX, &TY);
        StepX.Start(X1, ToSubpixels(TX), Length);
        StepY.Start(Y1, ToSubpixels(TY), Length);
    }

    void operator++()
    {
        StepX.Next();
        StepY.Next();
    }

    void coordinates(int *X, int *Y) const
    {
        *X = static_cast<int>(StepX.Value);
        *Y = static_cast<int>(StepY.Value);
    }

private:
    // Rounds half away from zero.
    static int64_t ToSubpixels(double Value)
    {
        double Scaled = Value * subpixel_scale;
        Scaled = Scaled < 0 ? Scaled - 0.5 : Scaled + 0.5;
        if (!(Scaled > double(INT_MIN) - 1 && Scaled < double(INT_MAX) + 1))
            return INT_MIN;
        return static_cast<int>(Scaled);
    }

    // Count even steps from From to To, the remainder spread over them; every value lies between the
    // two ends, so it fits an int again.
    struct line_steps
    {
        int64_t Count;
        int64_t Left;
        int64_t Remainder;
        int64_t Modulus;
        int64_t Value;

        void Start(int64_t From, int64_t To, unsigned Steps)
        {
            Count = Steps == 0 ? 1 : Steps;
            Left = (To - From) / Count;
            Remainder = (To - From) % Count;
            Modulus = Remainder;
            Value = From;
            if (Modulus <= 0) {
                Modulus += Steps;
                Remainder += Steps;
                Left--;
            }
            Modulus -= Steps;
        }

        // Whether a step carries follows the span's slope in no pattern that a branch predicts
        // well, so the carry is taken by arithmetic.
        void Next()
        {
            Modulus += Remainder;
            Value += Left;
            int64_t Carry = Modulus > 0;
            Modulus -= Count & -Carry;
            Value += Carry;
        }
    };

    agg::trans_affine Transformer;
    line_steps StepX;
    line_steps StepY;
};
