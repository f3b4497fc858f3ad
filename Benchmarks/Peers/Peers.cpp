#include "Benchmarks/Peers/Peers.h"

#include <utility>

namespace quelm::bench::peers {

std::vector<std::unique_ptr<JSONLibrary>> all() {
    std::vector<std::unique_ptr<JSONLibrary>> libraries;
    libraries.push_back(simdjsonDOM());
    libraries.push_back(rapidJSON());
    if (auto library = rapidJSONWithSSE2())
        libraries.push_back(std::move(library));
    libraries.push_back(nlohmannJSON());
    libraries.push_back(boostJSON());
    libraries.push_back(qJsonDocument());
    return libraries;
}

} // namespace quelm::bench::peers
