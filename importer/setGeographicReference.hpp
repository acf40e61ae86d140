// The last stage: where on the Earth the network lies.
#pragma once

class RoadNetworkImporter;

/// Gives the network a GeoReference at the centre of the file's limits, or at the mean position of
/// the Nodes where the limits are unknown (NaN without Nodes). Its altitude is 0.
void setGeographicReference(RoadNetworkImporter& importer);
