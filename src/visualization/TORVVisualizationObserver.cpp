#include "visualization/TORVVisualizationObserver.h"

TORVVisualizationObserver::~TORVVisualizationObserver() = default;
