// The record that identifies a host-visible class.
#pragma once

namespace kb::zero::meta {

struct Class {
  char const* name;  ///< full name with dots, as the host spells it: "kb.zero.Model"
};

}  // namespace kb::zero::meta
