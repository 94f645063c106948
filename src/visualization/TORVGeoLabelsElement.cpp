#include "visualization/TORVGeoLabelsElement.h"

#include "datalib/TORVLandmarkSet.h"
#include "datalib/TORVTerrainSet.h"
#include "utils/TORVDisplayMode.h"
#include "visualization/TORVLabelRoom.h"
#include "visualization/TORVLandmarkLabel.h"
#include "visualization/TORVSceneStyle.h"

#include <vtkMath.h>
#include <vtkNew.h>
#include <vtkPropAssembly.h>
#include <vtkTextRenderer.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace
{

constexpr double Above_m = 150.0;       // the ground, so that a label stands on it
constexpr int LongestName = 60;         // characters; a longer one would go through the whole picture
constexpr double FarthestAngle = 179.0; // degrees from the radar; the point opposite has no place in its plane
constexpr double OpacityByDay = 1.0;
constexpr double OpacityByNight = 0.9;

// The angle between two places as seen from the middle of the Earth, degrees.
double angleBetween(const TORVCoordinate& a, const TORVCoordinate& b)
{
    const double latA = vtkMath::RadiansFromDegrees(a.getLat());
    const double latB = vtkMath::RadiansFromDegrees(b.getLat());
    const double east = vtkMath::RadiansFromDegrees(b.getLon() - a.getLon());
    const double cosine = std::sin(latA) * std::sin(latB) + std::cos(latA) * std::cos(latB) * std::cos(east);
    return vtkMath::DegreesFromRadians(std::acos(std::clamp(cosine, -1.0, 1.0)));
}

std::string nameOf(const TORVLandmark& landmark)
{
    const QString name = landmark.getLabel().simplified();
    const bool isLong = name.size() > LongestName;
    return (isLong ? name.left(LongestName) + QChar(0x2026) : name).toStdString();
}

void logDebug(const char* words)
{
    TORVLog::Instance()->logDebug(QLatin1String(words));
}

// How names look in one display mode.
struct TextStyle
{
    explicit TextStyle(bool night)
        : opacity(night ? OpacityByNight : OpacityByDay),
          outline(TORVSceneStyle(QStringLiteral("RENDERER"), night).color("background/color", {0.15, 0.25, 0.3}))
    {
    }

    void applyTo(TORVLandmarkLabel& label) const { label.SetTextStyle(opacity, outline.data()); }

    double opacity;
    TORVSceneStyle::Color outline;
};

} // namespace

TORVGeoLabelsElement::TORVGeoLabelsElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORVGeoLabelsElement")
{
    vtkTextRenderer::GetInstance(); // which VTK makes without a lock: here it is the main thread that asks first
}

TORVGeoLabelsElement::~TORVGeoLabelsElement() = default;

void TORVGeoLabelsElement::invalidate()
{
    TORVLayerElement::invalidate();
    _landmarks.clear();
    _places.clear();
    _labels.clear();
    _builtSet.reset();
    _builtProjection.reset();
}

void TORVGeoLabelsElement::place()
{
    for (std::size_t i = 0; i < _labels.size(); ++i) {
        _labels[i]->SetWorldPosition(_places[i].x, _places[i].y, _places[i].z);
    }
}

void TORVGeoLabelsElement::restyle()
{
    const TextStyle style(TORVDisplayMode::isNight());
    for (const auto& label : _labels) {
        style.applyTo(*label);
    }
}

void TORVGeoLabelsElement::rebuild(const std::atomic<bool>& /*abort*/)
{
    createVTK();
}

void TORVGeoLabelsElement::createVTK()
{
    assert(_params);
    assert(_params->getLandmarkSet());
    const QString scale = QLatin1String("- vertScale=") + QString::number(_params->getVerticalScale());
    if (_prop && isBuiltOfPresentSet()) {
        logDebug("Update landmark labels:");
        TORVLog::Instance()->logDebug(scale);
        updatePlaces();
        return;
    }
    logDebug("Create landmark labels:");
    TORVLog::Instance()->logDebug(scale);
    createLabels();
}

bool TORVGeoLabelsElement::isBuiltOfPresentSet() const
{
    return _builtSet == _params->getLandmarkSet() && _builtProjection == _params->getGeoProjection();
}

void TORVGeoLabelsElement::createLabels()
{
    _builtSet = _params->getLandmarkSet();
    _builtProjection = _params->getGeoProjection();
    assert(_builtProjection);
    _landmarks.clear();
    for (const TORVLandmark::CPtr& landmark : _builtSet->getLandmarks()) {
        if (angleBetween(_builtProjection->getCentre(), landmark->getLocation()) < FarthestAngle) {
            _landmarks.push_back(landmark);
        }
    }
    std::stable_sort(
        _landmarks.begin(), _landmarks.end(),
        [](const TORVLandmark::CPtr& a, const TORVLandmark::CPtr& b) { return a->getPriority() > b->getPriority(); });
    updatePlaces();
    const TextStyle style(TORVDisplayMode::isNight());
    const auto room = boost::make_shared<TORVLabelRoom>();
    vtkNew<vtkPropAssembly> assembly;
    _labels.clear();
    for (const TORVLandmark::CPtr& landmark : _landmarks) {
        vtkNew<TORVLandmarkLabel> label;
        label->SetText(nameOf(*landmark));
        label->SetColor(landmark->getRed(), landmark->getGreen(), landmark->getBlue());
        label->SetRoom(room, _labels.empty());
        style.applyTo(*label);
        assembly->AddPart(label);
        _labels.emplace_back(label);
    }
    place(); // nobody sees them yet
    _prop = assembly;
}

void TORVGeoLabelsElement::updatePlaces()
{
    _places.clear();
    for (const TORVLandmark::CPtr& landmark : _landmarks) {
        _places.push_back(placeOf(*landmark));
    }
}

TORVPoint3D TORVGeoLabelsElement::placeOf(const TORVLandmark& landmark) const
{
    TORVPoint3D place = _params->getGeoProjection()->projectFromLatLon(landmark.getLocation());
    const auto& terrain = _params->getTerrainSet();
    const bool isOnGround = !landmark.hasAltitude() && terrain;
    const double height = isOnGround ? terrain->getElevationAtLocation(landmark.getLocation()) : landmark.getAltitude();
    place.z = (height + Above_m) * _params->getVerticalScale();
    return place;
}
