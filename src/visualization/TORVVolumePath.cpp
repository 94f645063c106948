#include "visualization/TORVVolumePath.h"

#include "utils/TORVLog.h"

#include <QString>

#include <vtkOpenGLRenderWindow.h>

#include <atomic>

namespace
{

std::atomic<bool> software{true};

const char* const SoftwareRenderers[] = {"llvmpipe", "softpipe", "swr", "software rasterizer"};

// The line of the window's report of itself that names the renderer.
QString rendererOf(vtkRenderWindow* window)
{
    const QString report = QString::fromUtf8(window->ReportCapabilities());
    const QString head = QStringLiteral("OpenGL renderer string:");
    const int begin = report.indexOf(head);
    if (begin < 0) {
        return {};
    }
    return report.mid(begin + head.size()).section(QLatin1Char('\n'), 0, 0).trimmed();
}

} // namespace

void TORVVolumePath::detect(vtkRenderWindow* window)
{
    const QString renderer = rendererOf(window);
    setSoftware(renderer.isEmpty() || isSoftwareRenderer(renderer.toUtf8().constData()));
    TORVLog::Instance()->logNotice(
        QStringLiteral("OpenGL renderer: %1; volumes are drawn by %2")
            .arg(renderer.isEmpty() ? QStringLiteral("unknown") : renderer,
                 isSoftware() ? QStringLiteral("the processor") : QStringLiteral("the graphics card")));
}

bool TORVVolumePath::isSoftware()
{
    return software;
}

void TORVVolumePath::setSoftware(bool isOne)
{
    software = isOne;
}

bool TORVVolumePath::isSoftwareRenderer(const char* description)
{
    const QString text = QString::fromUtf8(description);
    for (const char* const name : SoftwareRenderers) {
        if (text.contains(QLatin1String(name), Qt::CaseInsensitive)) {
            return true;
        }
    }
    return false;
}
