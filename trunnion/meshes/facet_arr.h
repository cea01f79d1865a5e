// FacetArr: what the facet lists TriangleArr and QuadArr have in common.
//
// Their operations are told as scans over the list, and on a small list, or one that is asked
// seldom, scans are what they are. Once the scans have cost about as much as an index of the list
// would, one is built: from then on a search costs what the facets at its nodes cost, and a change
// of single facets is entered into the index. A change of the whole list (inserting, closing gaps,
// renumbering, assigning, reading, turning normals) makes it useless, and the next one is built
// when that pays again. As long as a host may hold a writable pointer to the items, every search
// scans. The answers are always those of the scans.
//
// The index takes 12 bytes for each corner of a triangle, 4 for each of a quad, and 12 for each
// node number, that of a million triangles on half a million nodes 42 MB; after many changes up to
// four times as much. It is not copied, and where memory is short the list does without.
#pragma once

#include <memory>
#include <vector>

#include "trunnion/containers/item_array.h"
#include "trunnion/meshes/detail/facet_index.h"
#include "trunnion/meshes/detail/lazy_index.h"
#include "trunnion/meshes/mesh_records.h"

namespace trunnion::detail {

// A list of facets with its index.
//
template <class Item>
class TRUNNION_API FacetArr : public ItemArr<Item> {
public:
    FacetArr() = default;
    FacetArr(const FacetArr &) = default;
    FacetArr &operator=(const FacetArr &) = default;
    ~FacetArr() override = default;

    // The same as in ItemArr, and the index kept: where a list is used as an ItemArr, the index is
    // not told of the change and goes.
    void SetItemM(const Item &item, int idx);
    // The same as in ItemArr, and the index kept.
    int AddItemM(const Item &item) {
        SetItemM(item, bound);
        return bound - 1;
    }
    // The same as in ItemArr, and the index kept.
    void DelItemM(int idx);
    // The same as in ItemArr; gives the index's memory back, too.
    int DelAllM();

    // Number of facets that hold the edge between nodes a and b; *slot receives the highest one and
    // stays when there is none. 1 is a boundary edge, 2 an inner edge, more a non-manifold one.
    int JudgeBoundM(int a, int b, int *slot) const;
    // The node behind `node` in the lowest facet that holds it, or SL_DELETED_INT.
    int GetOneNeighbourPntM(int node) const;

protected:
    using ItemArr<Item>::items;
    using ItemArr<Item>::changedItems;
    using ItemArr<Item>::holdsSlot;
    using ItemArr<Item>::available;
    using ItemArr<Item>::bound;
    using ItemArr<Item>::changeCount;
    using ItemArr<Item>::writerMayLive;

    // The index, built if that pays, or null. Null as long as a host may write to the items.
    const FacetIndex<Item> *searchIndex() const {
        const FacetIndex<Item> *ready = readyIndex();
        return ready != nullptr || writerMayLive ? ready : builtIndex();
    }
    // The same, but none is built.
    const FacetIndex<Item> *readyIndex() const {
        return writerMayLive ? nullptr : index.ready(changeCount);
    }
    void noteScan(int slots) const { index.noteScan(slots); }

    // Calls visit(slot) for every slot that holds the node, in ascending order, until it returns
    // true.
    template <class Visit>
    void anyAt(int node, Visit visit) const {
        if (const auto *found = searchIndex()) {
            found->anyAt(node, visit);
            return;
        }
        int i = 0;
        while (i < bound && !(holdsNode(items()[i], node) && visit(i))) {
            ++i;
        }
        noteScan(i);
    }
    // Calls change(slot) for the same slots; each may be deleted.
    template <class Change>
    void changeAt(int node, Change change) {
        std::vector<int> slots;
        if (slotsAt(node, slots)) {
            std::for_each(slots.begin(), slots.end(), change);
            return;
        }
        for (int i = 0; i < bound; ++i) {
            if (holdsNode(items()[i], node)) {
                change(i);
            }
        }
        noteScan(bound);
    }
    // In every slot that holds `oldNode` its first position takes `newNode`, then follows
    // finish(slot), which may delete it.
    template <class Finish>
    void replaceNode(int oldNode, int newNode, Finish finish) {
        const FacetIndex<Item> *found = searchIndex();
        if (found != nullptr && found->countAt(oldNode) > bound / largePart) {
            index.drop(); // to enter so many changes costs more than a new index
        }
        changeAt(oldNode, [&](int slot) {
            replaceNodeAt(slot, oldNode, newNode);
            finish(slot);
        });
    }

private:
    static constexpr int largePart = 16;

    // The index, built if that pays, or null. Where there is none and no writer.
    const FacetIndex<Item> *builtIndex() const;
    void replaceNodeAt(int slot, int oldNode, int newNode);
    // The slots that hold the node, if the index knows them.
    bool slotsAt(int node, std::vector<int> &slots) const;
    // Changes the facets in some way by change() and keeps the index, if there is one, by
    // update(index).
    template <class Change, class Update>
    void keepIndex(Change change, Update update);

    LazyIndex<FacetIndex<Item>> index;
};

} // namespace trunnion::detail
