#include "parts/TextTable.hpp"

#include "support/ustring.hpp"

std::vector<std::u16string const*> TextTable::tellTo(OpenStreetMap::ElementSink& sink) const {
  std::vector<std::u16string const*> texts;
  texts.reserve(ends.size());
  std::uint64_t begin = 0;
  for (std::uint64_t const end : ends) {
    texts.push_back(sink.intern({bytes.data() + begin, end - begin}));
    begin = end;
  }
  return texts;
}

TextTable::Number TextNumbers::of(std::u16string const* text) {
  auto const next = static_cast<TextTable::Number>(table_.ends.size());
  auto const [known, isNew] = numbers_.try_emplace(text, next);
  if (isNew) {
    std::string const utf8 = support::ustring_to_utf8(*text);
    table_.bytes.insert(table_.bytes.end(), utf8.begin(), utf8.end());
    table_.ends.push_back(table_.bytes.size());
  }
  return known->second;
}
