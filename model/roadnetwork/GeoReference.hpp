// The geographic reference of a road network.
#pragma once

#include "model/zero/ModelElement.hpp"

namespace velora::roadnetwork {

class RoadNetworkImpl;

class GeoReferenceImpl : public kb::zero::ModelElementImpl {
 public:
  explicit GeoReferenceImpl(boost::uuids::uuid const& uuid);
  ~GeoReferenceImpl() override;

  /// Latitude and longitude in degrees (WGS 84), altitude in metres. NaN, for unknown, is kept.
  virtual void setOrigin(double latitude, double longitude, double altitude);
  double getLatitude() const noexcept { return latitude_; }
  double getLongitude() const noexcept { return longitude_; }
  double getAltitude() const noexcept { return altitude_; }

 protected:
  void detach() override;

 private:
  friend class RoadNetworkImpl;

  double latitude_ = 0.0;
  double longitude_ = 0.0;
  double altitude_ = 0.0;
  RoadNetworkImpl* network_ = nullptr;  // not counted: the network owns it
};

class GeoReference : public kb::zero::Handle<GeoReferenceImpl> {
 public:
  using Handle::Handle;
  static GeoReference create(kb::zero::Model const& model, boost::uuids::uuid const& id) {
    return kb::zero::createElement<GeoReference>(model, id);
  }
};

}  // namespace velora::roadnetwork
