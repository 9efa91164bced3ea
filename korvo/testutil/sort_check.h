// Checks that the fast sorts of a list class give exactly the orders of the
// reference sorts that define them: Sortera that of the selection sort,
// Omsortera that of the insertion sort.
#ifndef KORVO_TESTUTIL_SORT_CHECK_H_
#define KORVO_TESTUTIL_SORT_CHECK_H_

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace korvo::test {

// A list class with its reference sorts in reach.
template <class List>
class SortProbe : public List {
 public:
  using List::List;
  using List::OmsorteraInsattning;
  using List::SorteraUrval;
};

// The places the records had before sorting, in the order they stand now.
// `before` holds the record addresses in the old order.
template <class List>
std::vector<int> PlacesNow(List& list, const std::vector<const void*>& before) {
  std::vector<std::pair<const void*, int>> index;
  for (int i = 0; i < static_cast<int>(before.size()); ++i) index.emplace_back(before[i], i);
  std::sort(index.begin(), index.end());
  std::vector<int> places;
  if (list.Home() == 0) {
    do {
      auto it = std::lower_bound(index.begin(), index.end(),
                                 std::make_pair(static_cast<const void*>(list.pael), 0));
      places.push_back(it != index.end() && it->first == list.pael ? it->second : -1);
    } while (list++);
  }
  return places;
}

template <class List>
std::vector<const void*> Addresses(List& list) {
  std::vector<const void*> out;
  if (list.Home() == 0) {
    do out.push_back(list.pael);
    while (list++);
  }
  return out;
}

// The orders that one sort gives: `sort` is applied to a list that `fill`
// makes from the random source seeded with `seed`.
template <class List>
std::vector<int> SortedPlaces(const std::function<void(List&, std::mt19937&)>& fill, unsigned seed,
                              const std::function<void(List&)>& sort) {
  std::mt19937 random(seed);
  List list;
  fill(list, random);
  const std::vector<const void*> before = Addresses(list);
  sort(list);
  return PlacesNow(list, before);
}

// For each seed and key: Sortera against SorteraUrval and Omsortera against
// OmsorteraInsattning, on lists that `fill` makes alike. Returns the first
// disagreement as "key k seed s: sortera|omsortera", or an empty text.
template <class List>
std::string FirstDisagreement(const std::function<void(List&, std::mt19937&)>& fill,
                              const std::vector<int>& keys, int seeds) {
  for (int key : keys) {
    for (int s = 1; s <= seeds; ++s) {
      const unsigned seed = static_cast<unsigned>(s * 7919 + key);
      auto fast = SortedPlaces<List>(fill, seed, [key](List& l) { l.Sortera(key); });
      auto slow = SortedPlaces<List>(fill, seed, [key](List& l) { l.SorteraUrval(key); });
      if (fast != slow) {
        return "key " + std::to_string(key) + " seed " + std::to_string(s) + ": sortera";
      }
      fast = SortedPlaces<List>(fill, seed, [key](List& l) { l.Omsortera(key); });
      slow = SortedPlaces<List>(fill, seed, [key](List& l) { l.OmsorteraInsattning(key); });
      if (fast != slow) {
        return "key " + std::to_string(key) + " seed " + std::to_string(s) + ": omsortera";
      }
    }
  }
  return std::string();
}

}  // namespace korvo::test

#endif  // KORVO_TESTUTIL_SORT_CHECK_H_
