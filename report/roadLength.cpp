#include "report/roadLength.hpp"

#include "report/lineLength.hpp"

double roadLength(velora::roadnetwork::Road const& road) {
  return lineLength(road->getCentersX().values(), road->getCentersY().values());
}
