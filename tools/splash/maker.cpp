// Letters the splash screen at build time: name and version beside the storm, at 100 and 200 %. It needs no display.
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QTextStream>

namespace
{

constexpr int Width_px = 640;
constexpr int Height_px = 360;
constexpr int TextRight_px = 604;
constexpr int NameBaseline_px = 74;
constexpr int VersionBaseline_px = 98;
const QColor NameColor(0xCD, 0xBE, 0xA4);
const QColor VersionColor(0xB6, 0xA8, 0x8F);

struct Scale
{
    const char* suffix;
    int factor;
};

const Scale Scales[] = {{"", 1}, {"@2x", 2}};

QFont fontOf(int size_px, QFont::Weight weight)
{
    QFont font(QStringLiteral("Open Sans"));
    QFont::insertSubstitutions(QStringLiteral("Open Sans"),
                               {QStringLiteral("Noto Sans"), QStringLiteral("DejaVu Sans")});
    font.setPixelSize(size_px);
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

void drawRightAligned(QPainter& painter, const QFont& font, const QColor& color, int baseline, const QString& text)
{
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(QPointF(TextRight_px - QFontMetricsF(font).horizontalAdvance(text), baseline), text);
}

QImage lettered(const QImage& storm, const QString& version, int factor)
{
    QImage image = storm.scaled(factor * Width_px, factor * Height_px, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                       .convertToFormat(QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.scale(factor, factor);
    drawRightAligned(painter, fontOf(44, QFont::Light), NameColor, NameBaseline_px, QStringLiteral("TORV3D"));
    drawRightAligned(painter, fontOf(12, QFont::Normal), VersionColor, VersionBaseline_px, version);
    return image;
}

bool writeList(const QString& directory, const QStringList& names)
{
    QByteArray text = "<!DOCTYPE RCC>\n<RCC version=\"1.0\">\n    <qresource prefix=\"/icons\">\n";
    for (const QString& name : names) {
        text += "        <file>" + name.toLatin1() + "</file>\n";
    }
    text += "    </qresource>\n</RCC>\n";
    QFile file(directory + QLatin1String("/splash.qrc"));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

} // namespace

int main(int argc, char* argv[])
{
    // Fonts and no screen.
    qputenv("QT_QPA_PLATFORM", "minimal:enable_fonts");
    const QGuiApplication application(argc, argv);
    QTextStream errors(stderr);
    if (argc != 4) {
        errors << "usage: splashmaker STORM.png VERSION OUTPUT-DIRECTORY\n";
        return 2;
    }
    const QImage storm(QString::fromLocal8Bit(argv[1]));
    if (storm.isNull()) {
        errors << "splashmaker: " << argv[1] << ": no picture\n";
        return 1;
    }
    const QString directory = QString::fromLocal8Bit(argv[3]);
    bool isWritten = QDir().mkpath(directory);
    QStringList names;
    for (const Scale& scale : Scales) {
        names << QStringLiteral("splash_screen%1.png").arg(QLatin1String(scale.suffix));
        const QImage image = lettered(storm, QString::fromLocal8Bit(argv[2]), scale.factor);
        isWritten = isWritten && image.save(directory + QLatin1Char('/') + names.last());
    }
    if (!isWritten || !writeList(directory, names)) {
        errors << "splashmaker: " << directory << ": can't be written\n";
        return 1;
    }
    return 0;
}
