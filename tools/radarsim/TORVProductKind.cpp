#include "radarsim/TORVProductKind.h"

#include <algorithm>

const std::vector<TORVProductKind>& TORVProductKind::all()
{
    // Integrated water has no data type of its own: under a code that nobody else uses, its raw values are kg/m^2.
    static const std::vector<TORVProductKind> kinds = {
        {Z, "Z", "CAPZ", true, true, 3, 2, 9},           {V, "V", "CAPV", true, true, 3, 3, 10},
        {W, "W", "CAPW", true, true, 3, 4, 11},          {R, "R", "CAPR", true, false, 3, 13, 13},
        {MAX, "MAX", "MAX", false, true, 16, 2, 9},      {VIL, "VIL", "VIL", false, false, 10, 5, 5},
        {SRI, "SRI", "SRI", false, true, 32, 13, 13},    {PPI, "PPI", "PPIZ", false, false, 1, 2, 9},
        {CAPPI, "CAPPI", "CAPZ", false, false, 3, 2, 9},
    };
    return kinds;
}

const TORVProductKind* TORVProductKind::find(const QString& name)
{
    const auto hasName = [&name](const TORVProductKind& kind) {
        return name.compare(QLatin1String(kind.name), Qt::CaseInsensitive) == 0;
    };
    const auto found = std::find_if(all().begin(), all().end(), hasName);
    return found == all().end() ? nullptr : &*found;
}
