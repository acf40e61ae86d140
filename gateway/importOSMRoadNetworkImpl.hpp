// The one exported function.
#pragma once

#include <memory>

#include "gateway/HostArray.hpp"

/// Imports an OSM file into a road network.
///
/// `inputs`: an object array of class kb.zero.Model, an object array of class
/// velora.roadnetwork.RoadNetwork (element 0 of each is used), and the file name as text.
/// `outputs[0]`, which is always filled: a column vector of doubles with the file's geographic
/// limits in degrees (lowest and highest latitude, lowest and highest longitude), 0-by-1 when they
/// are unknown.
///
/// Every failure is an exception, and leaves `outputs[0]` as it was; what the import had written
/// into the network stays there. docs/embedding.md lists them.
extern "C" __attribute__((visibility("default"))) void importOSMRoadNetworkImpl(
    int outputCount, std::unique_ptr<HostArray> outputs[], int inputCount,
    HostArray const* inputs[]);
