// A 1-based ordered list of shared object references: the container of every document's lines.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "foundation/errors.hpp"

namespace quorvel {

template <class T>
class Collection {
 public:
  using Ref = std::shared_ptr<T>;

  // Appends the object itself (never a copy): the host's later changes show in the printout.
  void Add(Ref item) { items_.push_back(std::move(item)); }

  int32_t Count() const { return static_cast<int32_t>(items_.size()); }

  const Ref& Item(int64_t index) const {
    CheckIndex(index);
    return items_[static_cast<size_t>(index - 1)];
  }

  void Remove(int64_t index) {
    CheckIndex(index);
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index - 1));
  }

  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

 private:
  void CheckIndex(int64_t index) const {
    if (index < 1 || index > static_cast<int64_t>(items_.size()))
      Raise(err::kSubscript, "index " + std::to_string(index) + " of a collection of " +
                                 std::to_string(items_.size()));
  }

  std::vector<Ref> items_;
};

// The count as the 16-bit integer the printers index with; past 32767 raises the overflow
// error naming `what`, before anything of the document is drawn.
template <class T>
int16_t Count16(const Collection<T>& c, const std::string& what) {
  if (c.Count() > 32767)
    Raise(err::kOverflow, what + " holds " + std::to_string(c.Count()) + " lines, more than 32767");
  return static_cast<int16_t>(c.Count());
}

template <class T>
using CollectionRef = std::shared_ptr<Collection<T>>;

// Returns the collection behind `slot`, creating it empty on first use.
template <class T>
const CollectionRef<T>& LazyCollection(CollectionRef<T>& slot) {
  if (!slot) slot = std::make_shared<Collection<T>>();
  return slot;
}

}  // namespace quorvel
