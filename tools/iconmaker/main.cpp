// Makes what the program's windows look like, at build time: icons from drawings, the two style sheets from their one
// source, and the list of all of it that the resource compiler reads.
#include "gui/TORVPalette.h"
#include "iconmaker/TORVIconList.h"
#include "iconmaker/TORVIconSource.h"
#include "iconmaker/TORVStyleSheet.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTextStream>

namespace
{

constexpr int ApplicationIconSizes_px[] = {16, 24, 32, 48, 64, 128, 256};

struct Scale
{
    const char* suffix;
    double factor;
};

const Scale Scales[] = {{"", 1.0}, {"@1.5x", 1.5}, {"@2x", 2.0}};

class Maker final
{
public:
    Maker(const QString& resources, const QString& output)
        : _resources(resources), _output(output), _palette(resources + QLatin1String("/styles/palette.txt"))
    {
        _errors = _palette.getErrors();
        QDir(_output).mkpath(QStringLiteral("icons"));
    }

    QStringList make()
    {
        const TORVIconList list(_resources + QLatin1String("/icons/icons.txt"));
        _errors << list.getErrors();
        for (const TORVIconList::Icon& icon : list.getIcons()) {
            makeIcon(icon);
        }
        makeApplicationIcon();
        makeStyleSheets();
        write(QStringLiteral("look.qrc"), resourceList());
        return _errors;
    }

private:
    void makeIcon(const TORVIconList::Icon& icon)
    {
        const TORVIconSource source(drawing(icon.drawing));
        if (!isUsable(source) || !source.hasColorVariable()) {
            _errors << icon.name + QLatin1String(": no drawing in one colour variable");
            return;
        }
        for (const bool night : {false, true}) {
            const bool isOnAccent = icon.kind == TORVIconList::ON_ACCENT;
            makeForm(icon, source, QStringLiteral("_"), night, isOnAccent ? "on_accent" : "muted");
            makeForm(icon, source, QStringLiteral("_disabled_"), night, isOnAccent ? "on_accent" : "disabled");
            if (icon.kind == TORVIconList::CHECKABLE) {
                makeForm(icon, source, QStringLiteral("_selected_"), night, "accent");
            }
        }
    }

    void makeForm(const TORVIconList::Icon& icon, const TORVIconSource& source, const QString& infix, bool night,
                  const char* color)
    {
        TORVIconSource::Form form;
        form.color = _palette.color(QLatin1String(color), night);
        form.alert = _palette.color(QStringLiteral("err_fill"), night);
        form.isSelected = infix == QLatin1String("_selected_");
        const QString stem = icon.name + infix + (night ? QLatin1String("night") : QLatin1String("day"));
        for (const Scale& scale : Scales) {
            save(source.render(form, qRound(icon.size * scale.factor)), stem + QLatin1String(scale.suffix));
        }
    }

    void makeApplicationIcon()
    {
        const TORVIconSource source(drawing(QStringLiteral("application")));
        if (!isUsable(source)) {
            return;
        }
        for (const int size : ApplicationIconSizes_px) {
            save(source.render({}, size), QStringLiteral("application_%1").arg(size));
        }
    }

    void makeStyleSheets()
    {
        TORVStyleSheet sheet(_resources + QLatin1String("/styles/torv3d.qss"));
        write(QStringLiteral("day_mode.qss"), sheet.expanded(_palette, false).toLatin1());
        write(QStringLiteral("night_mode.qss"), sheet.expanded(_palette, true).toLatin1());
        _errors << sheet.getErrors();
        QFile table(_resources + QLatin1String("/styles/palette.txt"));
        if (table.open(QIODevice::ReadOnly)) {
            write(QStringLiteral("palette.txt"), table.readAll());
        }
    }

    QByteArray resourceList() const
    {
        QByteArray text = "<!DOCTYPE RCC>\n<RCC version=\"1.0\">\n    <qresource prefix=\"/\">\n";
        for (const QString& name : _files) {
            text += "        <file>" + name.toLatin1() + "</file>\n";
        }
        return text + "    </qresource>\n</RCC>\n";
    }

    QString drawing(const QString& name) const
    {
        return _resources + QLatin1String("/icons/") + name + QLatin1String(".svg");
    }

    bool isUsable(const TORVIconSource& source)
    {
        if (!source.getError().isEmpty()) {
            _errors << source.getError();
        }
        return source.getError().isEmpty();
    }

    void save(const QImage& image, const QString& stem)
    {
        const QString name = QLatin1String("icons/") + stem + QLatin1String(".png");
        if (!image.save(_output + QLatin1Char('/') + name)) {
            _errors << name + QLatin1String(": can't be written");
        }
        _files << name;
    }

    void write(const QString& name, const QByteArray& bytes)
    {
        QFile file(_output + QLatin1Char('/') + name);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            _errors << name + QLatin1String(": can't be written");
        }
        _files << name;
    }

    QString _resources;
    QString _output;
    TORVPalette _palette;
    QStringList _files; // relative to the output directory
    QStringList _errors;
};

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QTextStream errors(stderr);
    if (argc != 3) {
        errors << "usage: iconmaker RESOURCE-DIRECTORY OUTPUT-DIRECTORY\n";
        return 2;
    }
    const QStringList problems = Maker(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2])).make();
    for (const QString& problem : problems) {
        errors << "iconmaker: " << problem << '\n';
    }
    return problems.isEmpty() ? 0 : 1;
}
