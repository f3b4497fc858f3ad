#include "Benchmarks/Peers/Peers.h"
#include "Benchmarks/Peers/RapidJSONLibrary.h"

namespace quelm::bench::peers {

std::unique_ptr<JSONLibrary> rapidJSON() {
    return std::make_unique<rapidjsonpeer::RapidJSONLibrary>("rapidjson");
}

} // namespace quelm::bench::peers
