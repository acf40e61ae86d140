#include "model/roadnetwork/GeoReference.hpp"

#include "model/roadnetwork/RoadNetwork.hpp"

namespace velora::roadnetwork {

GeoReferenceImpl::GeoReferenceImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

GeoReferenceImpl::~GeoReferenceImpl() = default;

void GeoReferenceImpl::setOrigin(double latitude, double longitude, double altitude) {
  latitude_ = latitude;
  longitude_ = longitude;
  altitude_ = altitude;
}

void GeoReferenceImpl::detach() {
  if (network_ != nullptr) network_->setGeoReference({});
}

}  // namespace velora::roadnetwork
