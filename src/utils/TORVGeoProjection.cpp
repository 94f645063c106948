#include "utils/TORVGeoProjection.h"

#include "utils/TORVLog.h"
#include "utils/TORVPoint3D.h"

#include <QMutex>
#include <QMutexLocker>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <proj.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cassert>
#include <cmath>
#include <map>
#include <optional>
#include <thread>
#include <tuple>

namespace
{

// The one pi of both directions; positions that other programs of the radar system wrote were made with it.
constexpr double DegreesPerRadian = 180.0 / 3.14159265;

// How far a point may come back from where it was before it counts as another point.
constexpr double SamePlace_m = 0.01;

struct ContextDeleter
{
    void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
};

struct TransformationDeleter
{
    void operator()(PJ* transformation) const { proj_destroy(transformation); }
};

struct Handle
{
    std::unique_ptr<PJ_CONTEXT, ContextDeleter> context; // outlives the transformation made in it
    std::unique_ptr<PJ, TransformationDeleter> transformation;
    int error = 0;

    QString errorText() const
    {
        return QString::number(error) + QLatin1String(": ") +
               QString::fromUtf8(proj_context_errno_string(context.get(), error));
    }

    // PROJ's own error is sticky, so it is cleared before each call.
    std::optional<PJ_COORD> transform(PJ_DIRECTION direction, double x, double y)
    {
        proj_errno_reset(transformation.get());
        const PJ_COORD result = proj_trans(transformation.get(), direction, proj_coord(x, y, 0.0, 0.0));
        error = proj_errno(transformation.get());
        if (error != 0 || !std::isfinite(result.xy.x) || !std::isfinite(result.xy.y)) {
            return std::nullopt;
        }
        return result;
    }

    std::optional<PJ_COORD> forward(const TORVCoordinate& coordinate)
    {
        return transform(PJ_FWD, coordinate.getLon() / DegreesPerRadian, coordinate.getLat() / DegreesPerRadian);
    }
};

Handle makeHandle(const QByteArray& definition)
{
    Handle handle;
    handle.context.reset(proj_context_create());
    proj_log_level(handle.context.get(), PJ_LOG_NONE); // errors are logged here, with this program's words
    handle.transformation.reset(proj_create(handle.context.get(), definition.constData()));
    if (!handle.transformation) {
        handle.error = proj_context_errno(handle.context.get());
    }
    return handle;
}

// Handles beyond the first are made when threads meet, and may then fail where the first did not.
void stopUnlessReady(const Handle& handle, const char* words)
{
    if (!handle.transformation) {
        TORVLog::Instance()->logError(QLatin1String(words));
        assert(0);
    }
}

} // namespace

// A PROJ handle serves one thread at a time, so a projection holds several: the first is made at construction, the
// others when threads meet. A call takes the first that is free.
class TORVGeoProjection::Handles
{
    struct alignas(64) Slot
    {
        std::atomic_flag taken = ATOMIC_FLAG_INIT;
        Handle handle; // guarded by taken
    };

public:
    class Lease
    {
    public:
        explicit Lease(Slot& slot) : _slot(slot) {}

        ~Lease() { _slot.taken.clear(std::memory_order_release); }

        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;

        Handle& operator*() const { return _slot.handle; }

        Handle* operator->() const { return &_slot.handle; }

    private:
        Slot& _slot;
    };

    explicit Handles(QByteArray definition) : _definition(std::move(definition))
    {
        _slots.front().handle = makeHandle(_definition);
    }

    Lease lease()
    {
        Slot& slot = takeSlot();
        if (!slot.handle.transformation) {
            slot.handle = makeHandle(_definition);
        }
        return Lease(slot);
    }

private:
    Slot& takeSlot()
    {
        while (true) {
            for (Slot& slot : _slots) {
                if (!slot.taken.test_and_set(std::memory_order_acquire)) {
                    return slot;
                }
            }
            std::this_thread::yield();
        }
    }

    QByteArray _definition;
    std::array<Slot, 4> _slots;
};

TORVGeoProjection::TORVGeoProjection(QString type, const TORVCoordinate& centre, double radius, double invFlattening)
    : _type(std::move(type)), _centre(centre), _radius(radius), _invFlattening(invFlattening)
{
    TORVLog* const log = TORVLog::Instance();
    if (!isLegal()) {
        log->logDebug(QStringLiteral("TORVGeoProjection::TORVGeoProjection: Illegal projection."));
        log->logDebug(QLatin1String("proj=") + _type);
        log->logDebug(
            QStringLiteral("refLoc=%1, %2").arg(_centre.getLon(), 0, 'g', 6).arg(_centre.getLat(), 0, 'g', 6));
        log->logDebug(QStringLiteral("earth: radius=%1, flatness=%2").arg(_radius).arg(_invFlattening));
        assert(0);
    }
    _handles = std::make_unique<Handles>(definition().toUtf8());
    const Handles::Lease handle = _handles->lease();
    if (!handle->transformation) {
        log->logError(QStringLiteral("TORVGeoProjection::TORVGeoProjection(): pj_init_plus() failed!"));
        log->logError(QLatin1String("err: ") + handle->errorText());
        log->logError(QLatin1String("proj: ") + definition());
        assert(0);
    }
}

TORVGeoProjection::~TORVGeoProjection() = default;

TORVGeoProjection::CPtr TORVGeoProjection::shared(const QString& type, const TORVCoordinate& centre, double radius,
                                                  double invFlattening)
{
    using Key = std::tuple<QString, double, double, double, double>;
    static QMutex mutex;
    static std::map<Key, boost::weak_ptr<const TORVGeoProjection>> known; // guarded by mutex

    const Key key(type, centre.getLat(), centre.getLon(), radius, invFlattening);
    const QMutexLocker lock(&mutex);
    const auto found = known.find(key);
    if (found != known.end()) {
        if (CPtr projection = found->second.lock()) {
            return projection;
        }
    }
    for (auto entry = known.begin(); entry != known.end();) {
        entry = entry->second.expired() ? known.erase(entry) : std::next(entry);
    }
    const CPtr projection = boost::make_shared<TORVGeoProjection>(type, centre, radius, invFlattening);
    known[key] = projection;
    return projection;
}

TORVPoint3D TORVGeoProjection::projectFromLatLon(const TORVCoordinate& coordinate) const
{
    const Handles::Lease handle = _handles->lease();
    stopUnlessReady(*handle, "TORVGeoProjection::projectFromLatLon(): projection not initialized.");
    const std::optional<PJ_COORD> result = handle->forward(coordinate);
    if (!result) {
        TORVLog* const log = TORVLog::Instance();
        log->logError(
            QStringLiteral("TORVGeoProjection::projectFromLatLon(): pj_transform() failed! ret=%1").arg(handle->error));
        log->logError(QLatin1String("err=") + handle->errorText());
        log->logError(QStringLiteral("srcLatLon=(%1, %2)").arg(coordinate.getLon()).arg(coordinate.getLat()));
        assert(0);
    }
    return {result->xy.x, result->xy.y, 0.0};
}

TORVCoordinate TORVGeoProjection::projectToLatLon(const TORVPoint3D& point) const
{
    std::optional<PJ_COORD> result;
    {
        const Handles::Lease handle = _handles->lease();
        stopUnlessReady(*handle, "TORVGeoProjection::projectToLatLon(): projection not initialized.");
        result = handle->transform(PJ_INV, point.x, point.y);
        if (!result) {
            TORVLog* const log = TORVLog::Instance();
            log->logError(QStringLiteral("TORVGeoProjection::projectToLatLon((): pj_transform() failed! ret=%1")
                              .arg(handle->error));
            log->logError(QLatin1String("err=") + handle->errorText());
            log->logError(QStringLiteral("srcXYZ=(%1, %2, %3)").arg(point.x).arg(point.y).arg(point.z));
            assert(0);
        }
    }
    const double lat = result->lp.phi * DegreesPerRadian;
    double lon = correctedForPole(lat, result->lp.lam * DegreesPerRadian, point);
    while (lon < -180.0) {
        lon += 360.0;
    }
    while (lon > 180.0) {
        lon -= 360.0;
    }
    return {std::clamp(lat, -90.0, 90.0), lon};
}

bool TORVGeoProjection::isLegal() const
{
    return !_type.isEmpty() && _centre.getLat() >= -90.0 && _centre.getLat() <= 90.0 && _radius > 0.0 &&
           _invFlattening > 0.0;
}

QString TORVGeoProjection::definition() const
{
    // asprintf writes a decimal point whatever the locale; PROJ would take a comma for the end of the number.
    return QString::asprintf("+proj=%s +lat_0=%f +lon_0=%f +a=%f +rf=%f", qUtf8Printable(_type), _centre.getLat(),
                             _centre.getLon(), _radius, _invFlattening);
}

// A point behind the pole may come back on the near side; then its longitude is mirrored at the centre's. PROJ's own
// inverse gets this right, so only a point that doesn't project back to itself is touched.
double TORVGeoProjection::correctedForPole(double lat, double lon, const TORVPoint3D& point) const
{
    const double poleLat = lat >= 0.0 ? 90.0 : -90.0;
    if (_centre.getLat() == poleLat) {
        return lon;
    }
    const Handles::Lease handle = _handles->lease();
    const std::optional<PJ_COORD> pole = handle->forward(TORVCoordinate(poleLat, 0.0));
    if (!pole || (poleLat > 0.0 ? point.y <= pole->xy.y : point.y >= pole->xy.y)) {
        return lon;
    }
    const std::optional<PJ_COORD> back = handle->forward(TORVCoordinate(lat, lon));
    if (back && std::hypot(back->xy.x - point.x, back->xy.y - point.y) < SamePlace_m) {
        return lon;
    }
    return (_centre.getLon() + 180.0) - (lon - _centre.getLon());
}
