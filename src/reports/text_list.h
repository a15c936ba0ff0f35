#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velkor::reports {

// Texts in one piece of memory, numbered from 0 in the order in which they came. Equal ones are
// each kept.
class TextList {
 public:
  void Reserve(size_t texts, size_t bytes) {
    ends_.reserve(texts);
    bytes_.reserve(bytes);
  }
  void Add(std::string_view text) {
    bytes_ += text;
    ends_.push_back(bytes_.size());
  }
  // Behind its own.
  void Append(const TextList& texts) {
    const size_t start = bytes_.size();
    bytes_ += texts.bytes_;
    std::ranges::transform(texts.ends_, std::back_inserter(ends_),
                           [start](size_t end) { return start + end; });
  }
  // Keeps the memory.
  void Clear() {
    bytes_.clear();
    ends_.clear();
  }
  size_t size() const { return ends_.size(); }
  // Valid until the next Add.
  std::string_view operator[](size_t number) const {
    const size_t start = number == 0 ? 0 : ends_[number - 1];
    return std::string_view(bytes_).substr(start, ends_[number] - start);
  }

 private:
  std::string bytes_;
  std::vector<size_t> ends_;
};

// The places in a list of what some functions have and most have not. Functions come in the order
// of their indices.
class PlacesOfFew {
 public:
  void Add(uint32_t function) { functions_.push_back(function); }
  // Of functions that come later.
  void Append(const PlacesOfFew& places) {
    functions_.insert(functions_.end(), places.functions_.begin(), places.functions_.end());
  }
  void Clear() { functions_.clear(); }
  std::optional<size_t> Of(uint32_t function) const {
    const auto found = std::ranges::lower_bound(functions_, function);
    if (found == functions_.end() || *found != function) {
      return std::nullopt;
    }
    return static_cast<size_t>(found - functions_.begin());
  }

 private:
  std::vector<uint32_t> functions_;
};

// Values that few functions have.
template <typename Value>
class ValuesOfFew {
 public:
  void Add(uint32_t function, Value value) {
    places_.Add(function);
    values_.push_back(std::move(value));
  }
  // None for a function that has no such value.
  const Value* Of(uint32_t function) const {
    const std::optional<size_t> place = places_.Of(function);
    return place ? &values_[*place] : nullptr;
  }

 private:
  PlacesOfFew places_;
  std::vector<Value> values_;
};

// Texts that few functions have.
class TextsOfFew {
 public:
  void Add(uint32_t function, std::string_view text) {
    places_.Add(function);
    texts_.Add(text);
  }
  // Of functions that come later.
  void Append(const TextsOfFew& texts) {
    places_.Append(texts.places_);
    texts_.Append(texts.texts_);
  }
  void Clear() {
    places_.Clear();
    texts_.Clear();
  }
  std::optional<std::string_view> Of(uint32_t function) const {
    const std::optional<size_t> place = places_.Of(function);
    return place ? std::optional(texts_[*place]) : std::nullopt;
  }

 private:
  PlacesOfFew places_;
  TextList texts_;
};

}  // namespace velkor::reports
