// A text that many hold and nobody changes.
#pragma once

#include <string>
#include <utility>

#include "model/zero/Handle.hpp"
#include "model/zero/internal/ReferenceCount.hpp"

namespace kb::zero {

/// One pointer to a text, or none. Copying shares the text, which takes no memory and can't fail;
/// the count of those who share it is not atomic, like that of elements.
class SharedText {
 public:
  SharedText() noexcept = default;
  SharedText(std::u16string text) : box_(new Box(std::move(text))) {}  // NOLINT: it is a text

  explicit operator bool() const noexcept { return bool(box_); }
  /// The text; an empty one where there is none.
  std::u16string const& operator*() const noexcept {
    static std::u16string const none;
    return box_ ? box_.get()->text : none;
  }
  std::u16string const* operator->() const noexcept { return &**this; }

 private:
  struct Box {
    explicit Box(std::u16string from) noexcept : text(std::move(from)) {}
    void addRef() const noexcept { references.add(); }
    void removeRef() const noexcept {
      if (references.remove()) delete this;
    }

    std::u16string const text;
    mutable internal::ReferenceCount references;
  };

  Handle<Box const> box_;
};

}  // namespace kb::zero
