#include "export/TextColumn.hpp"

#include <limits>
#include <stdexcept>

#include "export/NetworkRows.hpp"

void TextColumn::add(std::span<std::u16string const* const> values) {
  std::int32_t code = Texts::none;
  if (values.size() == 1) {
    auto const [known, isNew] = codesOfValues_.try_emplace(values.front(), Texts::none);
    if (isNew) known->second = codeOf(joinedValues(values));
    code = known->second;
  } else if (!values.empty()) {
    code = codeOf(joinedValues(values));
  }
  texts_.codes.push_back(code);
}

std::int32_t TextColumn::codeOf(std::string const& text) {
  if (text.empty()) return Texts::none;
  if (codes_.size() == std::numeric_limits<std::int32_t>::max()) {
    throw std::length_error("more different texts than a column can have");
  }
  auto const [known, isNew] = codes_.try_emplace(text, static_cast<std::int32_t>(codes_.size()));
  if (isNew) {
    texts_.bytes.insert(texts_.bytes.end(), text.begin(), text.end());
    texts_.offsets.push_back(static_cast<std::int64_t>(texts_.bytes.size()));
  }
  return known->second;
}
