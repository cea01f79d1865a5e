// Functions of every header of the geometry kernel as a table. Each can be called with arguments
// that nobody has to write down, and what it gives is compared bit by bit, as text.
#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace test {

// Makes arguments. What it makes depends on `name` and `round` alone, on every machine.
class KernelInput {
public:
    KernelInput(const std::string &name, std::uint32_t round);

    // Numbers of one kind: spread evenly, on a grid where points coincide and lines run in
    // parallel, or unit vectors in rows of three. Of int 0 to 6, for counts of lists that have more
    // rows and positions in them; of short one of the two directions of an arc.
    template <class Number>
    void fill(std::span<Number> values);

private:
    int pick(int n);
    template <class Real>
    void fillReals(std::span<Real> values);

    std::minstd_rand engine;
};

struct KernelCall {
    std::string name;
    bool usesMaths; // ends in sin, acos or the like, whose last place is the system's own
    // The result and the elements that the call changed, in hexadecimal.
    std::function<std::string(KernelInput &)> run;
};

const std::vector<KernelCall> &kernelCalls();

} // namespace test
