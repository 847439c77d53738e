#include "support/OutsideFixtures.h"

#include "support/TestImages.h"

#include <QFile>
#include <QtEndian>

namespace velunta::test {

namespace {

void put16(QByteArray& out, int v)
{
    char b[2];
    qToLittleEndian<qint16>(qint16(v), b);
    out.append(b, 2);
}

void put32(QByteArray& out, qint64 v)
{
    char b[4];
    qToLittleEndian<quint32>(quint32(v), b);
    out.append(b, 4);
}

// A WMF record: its size in 16-bit words, its function and its parameters.
void record(QByteArray& out, int function, std::initializer_list<int> params)
{
    put32(out, 3 + qint64(params.size()));
    put16(out, function);
    for (int p : params)
        put16(out, p);
}

} // namespace

QByteArray SmallWmf(int extX, int extY, int inch, bool placeable)
{
    QByteArray records;
    record(records, 0x020B, {0, 0});                     // SETWINDOWORG y, x
    record(records, 0x020C, {extY, extX});               // SETWINDOWEXT y, x
    record(records, 0x02FC, {0, 0x00FF, 0x0000, 0});     // CREATEBRUSHINDIRECT red
    record(records, 0x012D, {0});                        // SELECTOBJECT
    record(records, 0x041B, {extY / 2, extX / 2, 0, 0}); // RECTANGLE bottom, right, top, left
    record(records, 0x02FC, {0, 0xFF00, 0x0000, 0});     // green
    record(records, 0x012D, {1});
    record(records, 0x0418, {extY, extX, extY / 2, extX / 2}); // ELLIPSE
    record(records, 0x0000, {});                               // EOF
    QByteArray out;
    if (placeable) {
        QByteArray head;
        put32(head, 0x9AC6CDD7);
        for (int v : {0, 0, 0, extX, extY, inch})
            put16(head, v);
        put32(head, 0);
        quint16 sum = 0;
        for (int i = 0; i < 20; i += 2)
            sum ^= qFromLittleEndian<quint16>(head.constData() + i);
        put16(head, sum);
        out += head;
    }
    put16(out, 1);
    put16(out, 9);
    put16(out, 0x300);
    put32(out, (18 + records.size()) / 2);
    put16(out, 2);
    put32(out, 7);
    put16(out, 0);
    return out + records;
}

QByteArray SmallEmf(std::array<int, 4> bounds, std::array<int, 4> frame)
{
    QByteArray records;
    const auto rec = [&](int type, std::initializer_list<qint64> params) {
        put32(records, type);
        put32(records, 8 + 4 * qint64(params.size()));
        for (qint64 p : params)
            put32(records, p);
    };
    rec(39, {1, 0, 0x0000FF, 0}); // CREATEBRUSHINDIRECT red
    rec(37, {1});                 // SELECTOBJECT
    rec(43, {0, 0, 100, 50});     // RECTANGLE
    rec(39, {2, 0, 0x00FF00, 0}); // green
    rec(37, {2});
    rec(42, {100, 50, 200, 100}); // ELLIPSE
    rec(14, {0, 16, 20});         // EOF
    QByteArray out;
    put32(out, 1);
    put32(out, 88);
    for (int v : bounds)
        put32(out, v);
    for (int v : frame)
        put32(out, v);
    put32(out, 0x464D4520); // " EMF"
    put32(out, 0x10000);
    put32(out, 88 + records.size());
    put32(out, 8);
    put16(out, 3);
    put16(out, 0);
    for (int v : {0, 0, 0, 1024, 768, 270, 203})
        put32(out, v);
    return out + records;
}

FakePrograms::FakePrograms() : m_oldPath(qgetenv("PATH"))
{
    qputenv("PATH", m_dir.path().toLocal8Bit() + ':' + m_oldPath);
}

FakePrograms::~FakePrograms()
{
    qputenv("PATH", m_oldPath);
}

QString FakePrograms::add(const QString& name, const QString& body)
{
    return WriteScript(m_dir.filePath(name),
                       QStringLiteral("for a in \"$@\"; do printf '%s\\n' \"$a\"; done >> \"") +
                           m_dir.filePath(name + QStringLiteral(".args")) + QStringLiteral("\"\n") + body);
}

QStringList FakePrograms::arguments(const QString& name) const
{
    QFile file(m_dir.filePath(name + QStringLiteral(".args")));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLocal8Bit(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

void FakePrograms::onlyFakes()
{
    qputenv("PATH", m_dir.path().toLocal8Bit());
}

EnvScope::EnvScope(const char* name, const QByteArray& value)
    : m_name(name), m_old(qgetenv(name)), m_had(qEnvironmentVariableIsSet(name))
{
    qputenv(name, value);
}

EnvScope::~EnvScope()
{
    if (m_had)
        qputenv(m_name, m_old);
    else
        qunsetenv(m_name);
}

SaneTestSetup::SaneTestSetup(const QByteArray& testConf)
    : m_env("SANE_CONFIG_DIR", m_dir.path().toLocal8Bit())
{
    WriteFile(m_dir.filePath(QStringLiteral("dll.conf")), "test\n");
    // The backend takes its defaults from here; without a resolution it scans at almost none.
    WriteFile(m_dir.filePath(QStringLiteral("test.conf")), "resolution 50.0\n" + testConf);
}

} // namespace velunta::test
