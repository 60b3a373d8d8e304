#include "text_p.h"

#include "qtversion_p.h"

#include <QtCore/QString>
#include <QtGui/QFontMetrics>
#include <QtGui/QGuiApplication>

#include <array>

namespace KivPrivate {

namespace {

/// Longer texts are measured each time, so that nothing large is held.
constexpr int longestText = 64;

struct MeasuredText
{
    bool known = false;
    QFont font;
    QString text;
    QSize size;
};

struct DerivedFont
{
    bool known = false;
    QFont base;
    int change = 0;
    QFont font;
};

/// The latest results. An entry that is needed for another one is overwritten.
struct Memory
{
    std::array<MeasuredText, 64> texts;
    std::array<DerivedFont, 8> fonts;
    std::size_t nextFont = 0;
};

Memory &memory()
{
    static Memory latest;
    return latest;
}

void forgetAll();

/// Lets the application report when the cached values become invalid. An application may unload the
/// library before its application ends, so the ties are cut with it.
class Watch
{
public:
    ~Watch()
    {
        qRemovePostRoutine(forgetAll);
        QObject::disconnect(fontsChanged);
    }
    void begin()
    {
        if (watching || !qGuiApp)
            return;
        watching = true;
        qAddPostRoutine(forgetAll);
        fontsChanged = QObject::connect(qGuiApp, &QGuiApplication::fontDatabaseChanged, qGuiApp,
                                        [] { memory() = Memory(); });
    }
    void end()
    {
        watching = false;
    }

private:
    bool watching = false;
    QMetaObject::Connection fontsChanged;
};

Watch &watch()
{
    static Watch application;
    return application;
}

/// Fonts must be gone before the application; another one is watched again.
void forgetAll()
{
    memory() = Memory();
    watch().end();
}

/// The font that @p derive makes of @p base; @p change distinguishes the ways of deriving.
template <typename Derive>
QFont derivedFont(const QFont &base, int change, Derive derive)
{
    Memory &latest = memory();
    for (const DerivedFont &derived : latest.fonts) {
        // A held copy keeps the base's data alive, so that no other font can take its place. What
        // of it is set decides what a painter takes from its device instead.
        if (derived.known && derived.change == change && derived.base.isCopyOf(base) &&
            resolveMask(derived.base) == resolveMask(base)) {
            return derived.font;
        }
    }
    watch().begin();
    const DerivedFont made{true, base, change, derive(base)};
    latest.fonts[latest.nextFont] = made;
    latest.nextFont = (latest.nextFont + 1) % latest.fonts.size();
    return made.font;
}

QSize measured(const QFont &font, const QString &text)
{
    return QFontMetrics(font).size(Qt::TextSingleLine, text);
}

} // namespace

QFont withWeight(const QFont &font, bool bold)
{
    const QFont::Weight weight = bold ? QFont::Bold : QFont::Normal;
    return derivedFont(font, -weight, [weight](QFont derived) {
        derived.setWeight(weight);
        return derived;
    });
}

QFont smallerFont(const QFont &font, int percent)
{
    return derivedFont(font, percent, [percent](QFont derived) {
        derived.setPointSize(derived.pointSize() * percent / 100);
        derived.setWeight(QFont::Normal);
        return derived;
    });
}

QSize singleLineSize(const QFont &font, const QString &text)
{
    if (text.size() > longestText)
        return measured(font, text);
    MeasuredText &entry = memory().texts[qHash(text) % memory().texts.size()];
    if (!entry.known || !entry.font.isCopyOf(font) || entry.text != text) {
        watch().begin();
        entry = {true, font, text, measured(font, text)};
    }
    return entry.size;
}

int centredBaseline(const QFontMetrics &metrics, int height)
{
    return (height - metrics.height()) / 2 + metrics.ascent();
}

} // namespace KivPrivate
