// What every output says of its data, where the format has a place for it.
#pragma once

/// As the OpenStreetMap Foundation's attribution guidelines and the Open Database License ask.
inline constexpr char attribution[] = "\u00a9 OpenStreetMap contributors";
inline constexpr char license[] = "ODbL-1.0";  // as SPDX names it
inline constexpr char licenseUrl[] = "https://opendatacommons.org/licenses/odbl/1-0/";

/// The EPSG code of WGS 84, latitude and longitude in degrees.
inline constexpr char coordinateReferenceSystem[] = "EPSG:4326";
