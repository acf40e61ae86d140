#include "model/zero/PrimitiveCollection.hpp"

namespace kb::zero {

template class PrimitiveCollection<double, std::vector<double>>;

}  // namespace kb::zero
