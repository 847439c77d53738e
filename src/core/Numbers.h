#pragma once
// The number rules the program's arithmetic is written in: conversions that round
// half to even and fault on overflow, integer division that truncates, the text
// reader Val, and the uniform random source.

#include <QString>
#include <QStringView>

#include <cstdint>
#include <random>
#include <stdexcept>

namespace velunta {

// A 16-bit or 32-bit conversion out of range. Commands catch it in their guard.
class OverflowError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Division by zero in integer or float arithmetic that the program treats as a fault.
class DivisionByZero : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// v rounded half to even into 16 bits; throws OverflowError outside -32768..32767 or on NaN.
std::int16_t I2(double v);
// v rounded half to even into 32 bits; throws OverflowError outside the range or on NaN.
std::int32_t I4(double v);

// a \ b: both operands rounded half to even to 32 bits first, then the quotient
// truncated toward zero. Throws DivisionByZero when b rounds to 0.
std::int32_t IntDiv(double a, double b);

// Int(v): the largest integer not above v.
double Int(double v);

// Val(t): the leading number of a text, 0 if it has none. Blanks, tabs and line
// feeds are skipped anywhere in the number ("1 2" reads 12); a sign, digits, one
// decimal point and an exponent (E or D) are read; "&H" and "&O" prefixes read
// hexadecimal and octal. Val("50 pixel") = 50.
double Val(QStringView t);

// Trim(t): the text without leading and trailing blanks.
QString Trim(const QString& t);

// The shortest decimal text of a number as the program shows it: 100 -> "100",
// 12.5 -> "12.5", up to 15 significant digits, no exponent for ordinary values.
QString NumberText(double v);

// Uniform numbers in [0, 1), the Rnd(1) of the program. One instance lives in the
// draw state; tests seed it.
class Random {
public:
    Random();
    explicit Random(std::uint32_t seed);
    void seed(std::uint32_t s);
    double Rnd();

private:
    std::mt19937 m_engine;
};

} // namespace velunta
