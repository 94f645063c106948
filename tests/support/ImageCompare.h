#pragma once

#include <QImage>
#include <QString>

/**
 * Holds a picture against a baseline pixel by pixel, channel by channel: no blur, no shift, so that a step of one
 * palette entry is seen.
 *
 * Thread: any thread.
 */
class ImageCompare final
{
public:
    struct Tolerance
    {
        int perChannel = 12;      ///< of 255; a pixel further off in one channel is bad
        double badPixels = 0.005; ///< bad pixels allowed, of all
        double meanError = 1.0;   ///< mean difference of all channels allowed, of 255
    };

    struct Result
    {
        bool isSame = false;
        bool sizesDiffer = false;
        qint64 badPixels = 0;
        double meanError = 0.0;
        QImage difference; ///< bad pixels white on black

        QString words() const;
    };

    ImageCompare() = delete;

    static Result compare(const QImage& actual, const QImage& expected, const Tolerance& tolerance);

    static Result compare(const QImage& actual, const QImage& expected) { return compare(actual, expected, {}); }

    /**
     * Compares with tests/baselines/NAME.png. A missing baseline fails. Whatever fails leaves NAME.actual.png (and
     * NAME.difference.png) in the build's `pictures` directory.
     * @return empty, or what is wrong in words.
     */
    static QString againstBaseline(const QImage& actual, const QString& name, const Tolerance& tolerance);

    static QString againstBaseline(const QImage& actual, const QString& name)
    {
        return againstBaseline(actual, name, {});
    }
};
