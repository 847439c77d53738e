#pragma once
// For the tests of the import and the outside tools: small Windows metafiles built byte
// by byte, outside programs faked by scripts on a private PATH, and a private SANE set-up.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <array>

namespace velunta::test {

// A WMF drawing a red rectangle over the top left quarter of its window and a green
// ellipse in the bottom right quarter, its window extX x extY units. Placeable with
// `inch` units to the inch (and a frame as large as the window), or plain.
QByteArray SmallWmf(int extX, int extY, int inch, bool placeable = true);
// The same drawing as an EMF of 200 x 100 device units with the bounds and frame given
// as left, top, right, bottom, both edges included (the frame in hundredths of a millimetre).
QByteArray SmallEmf(std::array<int, 4> bounds, std::array<int, 4> frame);

// Programs on a PATH of their own, put in front of the real one while the object
// lives. Each fake writes its arguments, one a line, to "<name>.args" in its folder,
// then runs `body` (shell commands; "$@" are its arguments).
class FakePrograms {
public:
    FakePrograms();
    ~FakePrograms();
    QString add(const QString& name, const QString& body = QString());
    // The arguments each run got, in order, as recorded.
    QStringList arguments(const QString& name) const;
    QString folder() const { return m_dir.path(); }
    // Leaves only the fakes on the PATH (their bodies then name tools by full path).
    void onlyFakes();

private:
    QTemporaryDir m_dir;
    QByteArray m_oldPath;
};

// Sets an environment variable for the life of the object.
class EnvScope {
public:
    EnvScope(const char* name, const QByteArray& value);
    ~EnvScope();

private:
    const char* m_name;
    QByteArray m_old;
    bool m_had;
};

// SANE that knows only its test backend, at 50 dpi, with `testConf` added to the
// backend's settings (its "test-picture", a "read-status-code" to fail with...).
class SaneTestSetup {
public:
    explicit SaneTestSetup(const QByteArray& testConf = {});

private:
    QTemporaryDir m_dir;
    EnvScope m_env;
};

} // namespace velunta::test
