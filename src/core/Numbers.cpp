#include "core/Numbers.h"

#include <cfenv>
#include <cmath>
#include <limits>

namespace velunta {

namespace {

double roundHalfEven(double v)
{
    // nearbyint honours the current rounding mode, which is round-to-nearest-even
    // unless someone changed it; make sure of it.
    if (std::fegetround() != FE_TONEAREST)
        std::fesetround(FE_TONEAREST);
    return std::nearbyint(v);
}

} // namespace

std::int16_t I2(double v)
{
    const double r = roundHalfEven(v);
    if (!(r >= -32768.0 && r <= 32767.0))
        throw OverflowError("overflow in 16-bit conversion");
    return static_cast<std::int16_t>(r);
}

std::int32_t I4(double v)
{
    const double r = roundHalfEven(v);
    if (!(r >= -2147483648.0 && r <= 2147483647.0))
        throw OverflowError("overflow in 32-bit conversion");
    return static_cast<std::int32_t>(r);
}

std::int32_t IntDiv(double a, double b)
{
    const std::int32_t ia = I4(a);
    const std::int32_t ib = I4(b);
    if (ib == 0)
        throw DivisionByZero("division by zero");
    if (ia == std::numeric_limits<std::int32_t>::min() && ib == -1)
        throw OverflowError("overflow in integer division");
    return ia / ib;
}

double Int(double v)
{
    return std::floor(v);
}

double Val(QStringView t)
{
    int i = 0;
    const int n = int(t.size());
    auto skipBlanks = [&] {
        while (i < n && (t[i] == u' ' || t[i] == u'\t' || t[i] == u'\n' || t[i] == u'\r'))
            ++i;
    };
    skipBlanks();
    if (i + 1 < n && t[i] == u'&') {
        const QChar kind = t[i + 1].toUpper();
        int base = kind == u'H' ? 16 : (kind == u'O' ? 8 : 0);
        if (base) {
            i += 2;
            qint64 value = 0;
            bool any = false;
            for (;; ++i) {
                skipBlanks();
                if (i >= n)
                    break;
                const char16_t ch = t[i].toLower().unicode();
                int d = -1;
                if (ch >= u'0' && ch <= u'9')
                    d = ch - u'0';
                else if (base == 16 && ch >= u'a' && ch <= u'f')
                    d = 10 + (ch - u'a');
                if (d < 0 || d >= base)
                    break;
                value = value * base + d;
                any = true;
                if (value > 0xFFFFFFFFll)
                    break;
            }
            if (!any)
                return 0;
            // Hex constants of up to 16 bits are signed 16-bit values, up to 32 bits signed 32-bit.
            if (value <= 0xFFFF)
                return double(std::int16_t(std::uint16_t(value)));
            return double(std::int32_t(std::uint32_t(value)));
        }
    }
    QString number;
    if (i < n && (t[i] == u'-' || t[i] == u'+')) {
        number += t[i];
        ++i;
    }
    bool digits = false, point = false;
    for (; i < n; ++i) {
        skipBlanks();
        if (i >= n)
            break;
        const QChar c = t[i];
        if (c.isDigit() && c.unicode() < 128) {
            number += c;
            digits = true;
        } else if (c == u'.' && !point) {
            number += c;
            point = true;
        } else {
            break;
        }
    }
    if (!digits)
        return 0;
    // An exponent counts only when digits follow it.
    if (i < n && (t[i] == u'e' || t[i] == u'E' || t[i] == u'd' || t[i] == u'D')) {
        int j = i + 1;
        QString exponent = QStringLiteral("e");
        if (j < n && (t[j] == u'-' || t[j] == u'+'))
            exponent += t[j++];
        bool expDigits = false;
        while (j < n && t[j].isDigit() && t[j].unicode() < 128) {
            exponent += t[j++];
            expDigits = true;
        }
        if (expDigits)
            number += exponent;
    }
    bool ok = false;
    const double v = number.toDouble(&ok);
    return ok && std::isfinite(v) ? v : 0;
}

QString Trim(const QString& t)
{
    int b = 0, e = int(t.size());
    while (b < e && t[b] == u' ')
        ++b;
    while (e > b && t[e - 1] == u' ')
        --e;
    return t.mid(b, e - b);
}

QString NumberText(double v)
{
    if (v == std::floor(v) && std::fabs(v) < 1e15)
        return QString::number(qint64(v));
    QString s = QString::number(v, 'g', 15);
    if (!s.contains(u'e'))
        return s;
    if (std::fabs(v) >= 1e15 || std::fabs(v) < 1e-15)
        return s.toUpper();
    // Small ordinary values are written out in full, still to 15 significant digits:
    // 0.00000333333333333333 rather than 3.33333333333333E-06.
    const int decimals = 14 - int(std::floor(std::log10(std::fabs(v))));
    s = QString::number(v, 'f', decimals);
    while (s.endsWith(u'0'))
        s.chop(1);
    if (s.endsWith(u'.'))
        s.chop(1);
    return s;
}

Random::Random() : m_engine(std::random_device{}()) {}
Random::Random(std::uint32_t s) : m_engine(s) {}
void Random::seed(std::uint32_t s)
{
    m_engine.seed(s);
}
double Random::Rnd()
{
    return std::uniform_real_distribution<double>(0.0, 1.0)(m_engine);
}

} // namespace velunta
