#include "gateway/importOSMRoadNetworkImpl.hpp"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "gateway/Exception.hpp"
#include "gateway/scalarText.hpp"
#include "importer/RoadNetworkImporter.hpp"
#include "importer/geographicLimits.hpp"

using foundation::core::except::raise;
using kb::zero::Model;
using velora::roadnetwork::RoadNetwork;
using velora::veloralib::unsupportedDataType;

namespace {

// One identifier covers every wrong type; it does not say which argument it was.
void checkArguments(int outputCount, int inputCount, HostArray const* const inputs[]) {
  if (outputCount > 1) host::tooManyOutputs();
  if (inputCount > 3) host::tooManyInputs();
  if (inputCount < 3) host::notEnoughInputs();
  if (!host::isClass(inputs[0], "kb.zero.Model")) raise<unsupportedDataType>();
  if (!host::isClass(inputs[1], "velora.roadnetwork.RoadNetwork")) raise<unsupportedDataType>();
  if (!Keldane::String::isNonMissingScalarText(inputs[2], 1)) raise<unsupportedDataType>();
}

host::ClassName internedName(kb::zero::meta::Class const& metaClass) {
  if (metaClass.name == nullptr || *metaClass.name == '\0') return {};
  return host::internClassName(std::string(metaClass.name));
}

// Element 0 of an object array; an empty handle when there is none, or it is of another class.
template <class X>
X getElement(HostArray const& array) {
  if (host::numberOfElements(array) == 0) return X();
  host::InterfacePointer const object = host::getObjectElement(array, 0);
  void* const impl = host::queryImplementation(object, internedName(X::metaClass()));
  return X(static_cast<typename X::Impl*>(impl));
}

Model getModel(HostArray const& array) {
  return getElement<Model>(array);
}

RoadNetwork getRoadNetwork(HostArray const& array) {
  return getElement<RoadNetwork>(array);
}

}  // namespace

void importOSMRoadNetworkImpl(int outputCount, std::unique_ptr<HostArray> outputs[], int inputCount,
                              HostArray const* inputs[]) {
  checkArguments(outputCount, inputCount, inputs);
  Model const model = getModel(*inputs[0]);
  RoadNetwork const roadNetwork = getRoadNetwork(*inputs[1]);
  std::string const fileName = getScalarTextAsStdString(inputs[2], 0);
  RoadNetworkImporter importer(model, roadNetwork, {.keepsNodes = false});
  importer.run(fileName);
  std::vector<double> const limits = geographicLimits(importer);
  std::unique_ptr<HostArray> result =
      host::createNumericArray({limits.size(), 1}, host::ClassCode::real64, host::Complexity::real);
  std::copy(limits.begin(), limits.end(), host::doubleData(*result));
  outputs[0] = std::move(result);
}
