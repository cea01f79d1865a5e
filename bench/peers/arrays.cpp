// Slot arrays: appending, and the life of slots, which are deleted in any order, used again, walked
// over and closed up. The peers are a vector, with the library's marker as its tombstone, and a
// colony, which hands out pointers in place of slot numbers.
#include <algorithm>
#include <numeric>

#include <plf_colony.h>

#include "bench/peers/contest.h"
#include "trunnion/containers/slot_array.h"

namespace {

using bench::Point;

void appendInts(bench::Contest &contest) {
    const int count = contest.size();
    IntArr ours;
    std::vector<int> theirs;
    contest.items(count, "ints", sizeof(int));
    contest.ours(
        [&] {
            for (int i = 0; i < count; ++i) {
                ours.AddItemM(i);
            }
        },
        [&] { ours.DelAllM(); });
    contest.peer(
        "std::vector", 0.6,
        [&] {
            for (int i = 0; i < count; ++i) {
                theirs.push_back(i);
            }
        },
        [&] { theirs = std::vector<int>(); });
    contest.measure([&] {
        for (int i = 0; i < count; ++i) {
            bench::require(*ours.GetItemPM(i) == theirs[static_cast<std::size_t>(i)], "ints added");
        }
    });
}

void appendPoints(bench::Contest &contest) {
    const int count = contest.size();
    Point3DArr ours;
    std::vector<Point> theirs;
    contest.items(count, "points", sizeof(Point));
    contest.ours(
        [&] {
            Point p = {0, 1, 2};
            for (int i = 0; i < count; ++i) {
                p[0] = static_cast<float>(i);
                ours.AddItemM(p.data());
            }
        },
        [&] { ours.DelAllM(); });
    contest.peer(
        "std::vector", 1.5,
        [&] {
            Point p = {0, 1, 2};
            for (int i = 0; i < count; ++i) {
                p[0] = static_cast<float>(i);
                theirs.push_back(p);
            }
        },
        [&] { theirs = std::vector<Point>(); });
    contest.measure([&] {
        for (int i = 0; i < count; ++i) {
            bench::require(std::equal(ours.GetItemPM(i), ours.GetItemPM(i) + 3,
                                      theirs[static_cast<std::size_t>(i)].begin()),
                           "points added");
        }
    });
}

// A vector whose holes hold the marker, and that knows how many items live.
struct Tombstones {
    std::vector<int> values;
    int available = 0;

    explicit Tombstones(int count) : values(static_cast<std::size_t>(count)), available(count) {
        std::iota(values.begin(), values.end(), 0);
    }
    void erase(int slot) {
        int &value = values[static_cast<std::size_t>(slot)];
        available -= value != SL_DELETED_INT ? 1 : 0;
        value = SL_DELETED_INT;
    }
    void set(int slot, int value) {
        int &held = values[static_cast<std::size_t>(slot)];
        available += held == SL_DELETED_INT ? 1 : 0;
        held = value;
    }
    long long sum() const {
        long long sum = 0;
        for (const int value : values) {
            sum += value != SL_DELETED_INT ? value : 0;
        }
        return sum;
    }
    void purge() {
        values.erase(std::remove(values.begin(), values.end(), SL_DELETED_INT), values.end());
    }
};

IntArr countingInts(int count) {
    IntArr list(count);
    for (int i = 0; i < count; ++i) {
        list.AddItemM(i);
    }
    return list;
}

// Half of the slots in random order.
std::vector<int> halfOfSlots(int count) {
    std::vector<int> slots(static_cast<std::size_t>(count));
    std::iota(slots.begin(), slots.end(), 0);
    std::shuffle(slots.begin(), slots.end(), std::mt19937(20));
    slots.resize(slots.size() / 2);
    return slots;
}

void requireSame(const IntArr &ours, const std::vector<int> &theirs) {
    for (int i = 0; i < ours.GetBoundM(); ++i) {
        bench::require(*ours.GetItemPM(i) == theirs[static_cast<std::size_t>(i)],
                       "values in slots");
    }
}

// The list before or after its half was deleted.
struct Lists {
    std::vector<int> slots;
    IntArr ours;
    Tombstones theirs;

    explicit Lists(int count)
        : slots(halfOfSlots(count)), ours(countingInts(count)), theirs(count) {}
    void deleteHalf() {
        for (const int slot : slots) {
            ours.DelItemM(slot);
            theirs.erase(slot);
        }
    }
};

void deleteHalf(bench::Contest &contest) {
    const Lists full(contest.size());
    IntArr ours;
    Tombstones theirs(0);
    plf::colony<int> colony;
    std::vector<plf::colony<int>::iterator> places;
    contest.items(static_cast<double>(full.slots.size()), "deletions");
    contest.ours(
        [&] {
            for (const int slot : full.slots) {
                ours.DelItemM(slot);
            }
        },
        [&] { ours = full.ours; });
    contest.peer(
        "std::vector with tombstones", 0.7,
        [&] {
            for (const int slot : full.slots) {
                theirs.erase(slot);
            }
        },
        [&] { theirs = full.theirs; });
    contest.peer(
        "plf::colony", 8.0,
        [&] {
            for (const int slot : full.slots) {
                colony.erase(places[static_cast<std::size_t>(slot)]);
            }
        },
        [&] {
            colony.clear();
            places.clear();
            for (const int value : full.theirs.values) {
                places.push_back(colony.insert(value));
            }
        });
    contest.measure([&] {
        requireSame(ours, theirs.values);
        const long long sum = std::accumulate(colony.begin(), colony.end(), 0LL);
        bench::require(ours.GetAvailableNumM() == theirs.available && theirs.sum() == sum,
                       "what is left");
    });
}

void refill(bench::Contest &contest) {
    Lists half(contest.size());
    half.deleteHalf();
    IntArr ours;
    Tombstones theirs(0);
    contest.items(static_cast<double>(half.slots.size()), "slots");
    contest.ours(
        [&] {
            for (const int slot : half.slots) {
                ours.SetItemM(slot, slot);
            }
        },
        [&] { ours = half.ours; });
    contest.peer(
        "std::vector with tombstones", 0.75,
        [&] {
            for (const int slot : half.slots) {
                theirs.set(slot, slot);
            }
        },
        [&] { theirs = half.theirs; });
    contest.measure([&] {
        requireSame(ours, theirs.values);
        bench::require(ours.GetAvailableNumM() == theirs.available, "slots used again");
    });
}

void walk(bench::Contest &contest) {
    Lists half(contest.size());
    half.deleteHalf();
    long long ours = 0;
    long long theirs = 0;
    contest.items(contest.size(), "slots", sizeof(int));
    contest.ours([&] {
        ours = 0;
        int value = 0;
        int slot = 0;
        for (int found = half.ours.GetFirstM(&value, &slot); found == 1;
             found = half.ours.GetNextM(&value, &slot, slot)) {
            ours += value;
        }
    });
    contest.peer("std::vector with tombstones", 0.3, [&] { theirs = half.theirs.sum(); });
    contest.measure([&] { bench::require(ours == theirs, "sum of a walk"); });
}

void purge(bench::Contest &contest) {
    Lists half(contest.size());
    half.deleteHalf();
    IntArr ours;
    Tombstones theirs(0);
    contest.items(contest.size(), "slots", sizeof(int));
    contest.ours([&] { ours.PurgeDeletedItemM(); }, [&] { ours = half.ours; });
    contest.peer(
        "std::vector with tombstones", 2.5, [&] { theirs.purge(); }, [&] { theirs = half.theirs; });
    contest.measure([&] {
        bench::require(ours.GetBoundM() == static_cast<int>(theirs.values.size()), "a purge");
        requireSame(ours, theirs.values);
    });
}

const bench::Row rows[] = {
    {"AddItemM", "ints", 10000000, appendInts},
    {"AddItemM", "float triples", 10000000, appendPoints},
    {"slots", "half deleted in random order", 1000000, deleteHalf},
    {"slots", "refilled in that order", 1000000, refill},
    {"slots", "walked over", 1000000, walk},
    {"slots", "purged", 1000000, purge},
};

} // namespace
