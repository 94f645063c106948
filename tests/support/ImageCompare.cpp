#include "support/ImageCompare.h"

#include <QDir>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace
{

std::array<int, 3> channelErrors(QRgb a, QRgb b)
{
    return {std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))};
}

QString pictureDirectory()
{
    const QString directory = QStringLiteral(TORV_BINARY_DIR "/pictures/");
    QDir().mkpath(directory);
    return directory;
}

} // namespace

QString ImageCompare::Result::words() const
{
    if (sizesDiffer) {
        return QStringLiteral("the sizes differ");
    }
    return QStringLiteral("%1 bad pixels, mean error %2").arg(badPixels).arg(meanError, 0, 'f', 3);
}

ImageCompare::Result ImageCompare::compare(const QImage& actual, const QImage& expected, const Tolerance& tolerance)
{
    Result result;
    if (actual.isNull() || actual.size() != expected.size()) {
        result.sizesDiffer = true;
        return result;
    }
    const QImage a = actual.convertToFormat(QImage::Format_RGB32);
    const QImage e = expected.convertToFormat(QImage::Format_RGB32);
    result.difference = QImage(a.size(), QImage::Format_RGB32);
    result.difference.fill(Qt::black);
    qint64 sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const std::array<int, 3> errors = channelErrors(a.pixel(x, y), e.pixel(x, y));
            sum += errors[0] + errors[1] + errors[2];
            if (*std::max_element(errors.begin(), errors.end()) > tolerance.perChannel) {
                ++result.badPixels;
                result.difference.setPixel(x, y, qRgb(255, 255, 255));
            }
        }
    }
    const double pixels = static_cast<double>(a.width()) * a.height();
    result.meanError = static_cast<double>(sum) / (3.0 * pixels);
    result.isSame = static_cast<double>(result.badPixels) <= tolerance.badPixels * pixels &&
                    result.meanError <= tolerance.meanError;
    return result;
}

QString ImageCompare::againstBaseline(const QImage& actual, const QString& name, const Tolerance& tolerance)
{
    const QString baseline = QStringLiteral(TORV_SOURCE_DIR "/tests/baselines/%1.png").arg(name);
    const QString written = pictureDirectory() + name + QStringLiteral(".actual.png");
    const QImage expected(baseline);
    if (expected.isNull()) {
        actual.save(written);
        return QStringLiteral("there is no %1; look at %2 and copy it there if it is right").arg(baseline, written);
    }
    const Result result = compare(actual, expected, tolerance);
    if (result.isSame) {
        return {};
    }
    actual.save(written);
    result.difference.save(pictureDirectory() + name + QStringLiteral(".difference.png"));
    return QStringLiteral("%1 against %2: %3").arg(written, baseline, result.words());
}
