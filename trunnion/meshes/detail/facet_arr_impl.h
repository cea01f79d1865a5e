// The definitions of FacetArr, for the sources that instantiate it.
#pragma once

#include <algorithm>

#include "trunnion/containers/detail/item_array_impl.h"
#include "trunnion/meshes/facet_arr.h"

namespace trunnion::detail {

template <class Item>
const FacetIndex<Item> *FacetArr<Item>::builtIndex() const {
    return index.find(changeCount, bound,
                      [this] { return std::make_unique<FacetIndex<Item>>(items(), bound); });
}

template <class Item>
template <class Change, class Update>
void FacetArr<Item>::keepIndex(Change change, Update update) {
    const bool isKept = index.keep(changeCount);
    change();
    if (isKept) {
        index.follow(changeCount, [&](FacetIndex<Item> &kept) {
            kept.setFacets(items());
            update(kept);
        });
    }
}

template <class Item>
void FacetArr<Item>::SetItemM(const Item &item, int idx) {
    const int oldBound = bound;
    const bool isReplaced = holdsSlot(idx);
    int before[Item::cornerCount];
    if (isReplaced) {
        std::copy_n(items()[idx].GetNodeIdxPM(), Item::cornerCount, before);
    }
    keepIndex([&] { ItemArr<Item>::SetItemM(item, idx); },
              [&](FacetIndex<Item> &kept) {
                  if (isReplaced) {
                      kept.change(idx, before);
                  }
                  for (int slot = oldBound; slot < bound; ++slot) {
                      kept.enter(slot);
                  }
              });
}

template <class Item>
void FacetArr<Item>::DelItemM(int idx) {
    const int oldBound = bound;
    keepIndex([&] { ItemArr<Item>::DelItemM(idx); },
              [&](FacetIndex<Item> &kept) {
                  if (bound < oldBound) {
                      kept.leave(idx);
                  }
              });
}

template <class Item>
int FacetArr<Item>::DelAllM() {
    index.drop();
    return ItemArr<Item>::DelAllM();
}

template <class Item>
void FacetArr<Item>::replaceNodeAt(int slot, int oldNode, int newNode) {
    int before[Item::cornerCount];
    std::copy_n(items()[slot].GetNodeIdxPM(), Item::cornerCount, before);
    keepIndex([&] { changedItems()[slot].replaceNode(oldNode, newNode); },
              [&](FacetIndex<Item> &kept) { kept.change(slot, before); });
}

template <class Item>
bool FacetArr<Item>::slotsAt(int node, std::vector<int> &slots) const {
    const FacetIndex<Item> *found = searchIndex();
    if (found == nullptr) {
        return false;
    }
    try {
        slots = found->slotsAt(node);
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

template <class Item>
int FacetArr<Item>::JudgeBoundM(int a, int b, int *slot) const {
    if (const FacetIndex<Item> *found = searchIndex()) {
        return found->countEdge(a, b, slot);
    }
    noteScan(bound);
    return countEdge(items(), bound, a, b, slot);
}

template <class Item>
int FacetArr<Item>::GetOneNeighbourPntM(int node) const {
    int neighbour = SL_DELETED_INT;
    anyAt(node, [&](int slot) {
        const Item &facet = items()[slot];
        neighbour = facet.GetNodeIdxPM()[(facet.positionOf(node) + 1) % Item::cornerCount];
        return true;
    });
    return neighbour;
}

} // namespace trunnion::detail
