#include "gui/TORVAnimationPanel.h"

#include <QGridLayout>

namespace
{

constexpr int WideFrom = 1200; // pixels: a time line and all settings in one line
constexpr int WideHeight = 72;
constexpr int NarrowHeight = 104;
constexpr QMargins Margins = {16, 8, 16, 8};
constexpr int Gap = 16;

} // namespace

TORVAnimationPanel::TORVAnimationPanel(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_StyledBackground);
}

TORVAnimationPanel::~TORVAnimationPanel() = default;

void TORVAnimationPanel::setParts(QWidget* buttons, QWidget* timeline, QWidget* settings)
{
    _buttons = buttons;
    _timeline = timeline;
    _settings = settings;
    _layout = new QGridLayout(this);
    _layout->setContentsMargins(Margins);
    _layout->setHorizontalSpacing(Gap);
    _layout->setColumnStretch(1, 1);
    layOut();
}

void TORVAnimationPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (_layout && _isWide != (width() >= WideFrom)) {
        layOut();
    }
}

void TORVAnimationPanel::layOut()
{
    _isWide = width() >= WideFrom;
    for (QWidget* const part : {_buttons, _timeline, _settings}) {
        _layout->removeWidget(part);
    }
    _layout->addWidget(_buttons, 0, 0, _isWide ? 1 : 2, 1, Qt::AlignVCenter);
    _layout->addWidget(_timeline, 0, 1);
    _layout->addWidget(_settings, _isWide ? 0 : 1, _isWide ? 2 : 1, Qt::AlignVCenter);
    setMinimumHeight(_isWide ? WideHeight : NarrowHeight);
}
