#pragma once

#include "utils/TORVCoordinate.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <memory>

struct TORVPoint3D;

/**
 * A map projection centred on a radar: positions to metres in its plane and back, by PROJ.
 *
 * Immutable after construction. A definition that PROJ refuses, and a point that it can't transform, are programming
 * errors: they are logged and stop the process, so whoever takes a definition from a file looks at it first
 * (`TORVProductHeader::whyRefused`).
 *
 * Thread: any thread, any number at once; each call borrows one of a few PROJ handles of its own.
 */
class TORVGeoProjection
{
public:
    using Ptr = boost::shared_ptr<TORVGeoProjection>;
    using CPtr = boost::shared_ptr<const TORVGeoProjection>;

    /**
     * @param type           PROJ's name of the projection: "aeqd" or "merc"
     * @param centre         where the plane's origin lies
     * @param radius         semi-major axis in metres, above 0
     * @param invFlattening  above 0; the largest float stands for a sphere
     */
    TORVGeoProjection(QString type, const TORVCoordinate& centre, double radius, double invFlattening);
    virtual ~TORVGeoProjection();

    TORVGeoProjection(const TORVGeoProjection&) = delete;
    TORVGeoProjection& operator=(const TORVGeoProjection&) = delete;

    /// The projection of that definition which is in use somewhere already, or a new one: a directory of a hundred
    /// thousand files of ten radars parses ten definitions. Thread: any thread.
    static CPtr shared(const QString& type, const TORVCoordinate& centre, double radius, double invFlattening);

    /// Metres in the plane; z is 0.
    TORVPoint3D projectFromLatLon(const TORVCoordinate& coordinate) const;

    /// The z of the point plays no part.
    TORVCoordinate projectToLatLon(const TORVPoint3D& point) const;
    const QString& getType() const { return _type; }
    const TORVCoordinate& getCentre() const { return _centre; }

    /// Metres.
    double getRadius() const { return _radius; }
    double getInvFlattening() const { return _invFlattening; }

private:
    class Handles;

    bool isLegal() const;
    QString definition() const;
    double correctedForPole(double lat, double lon, const TORVPoint3D& point) const;

    QString _type;
    TORVCoordinate _centre;
    double _radius;
    double _invFlattening;
    std::unique_ptr<Handles> _handles;
};
