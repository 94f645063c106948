#include "utils/TORVDisplayMode.h"

std::atomic<bool> TORVDisplayMode::_isNight{false};
std::atomic<int> TORVDisplayMode::_changeCount{0};

void TORVDisplayMode::setNight(bool night)
{
    if (_isNight.exchange(night) != night) {
        ++_changeCount;
    }
}
