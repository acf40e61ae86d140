// The engine's columns as dictionaries of NumPy's arrays.
#pragma once

#include <nanobind/nanobind.h>

#include "export/NetworkColumns.hpp"

/// The columns of numbers by their names. All of these take what they are given.
nanobind::dict roadTable(NetworkColumns::Roads& roads);
/// The columns of texts.
nanobind::dict textTables(NetworkColumns::Roads& roads);
nanobind::dict restrictionTable(RestrictionColumns& restrictions);
