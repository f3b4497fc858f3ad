#include "Benchmarks/Peers/Peers.h"

#if defined(__SSE2__)

// RapidJSON scans strings and white space 16 bytes at a time only on request. In a namespace of its own,
// because both builds of it are linked into one program.
#define RAPIDJSON_SSE2
#define RAPIDJSON_NAMESPACE rapidjson_sse2
#define RAPIDJSON_NAMESPACE_BEGIN namespace rapidjson_sse2 {
#define RAPIDJSON_NAMESPACE_END }

#include "Benchmarks/Peers/RapidJSONLibrary.h"

namespace quelm::bench::peers {

std::unique_ptr<JSONLibrary> rapidJSONWithSSE2() {
    return std::make_unique<rapidjsonpeer::RapidJSONLibrary>("rapidjson-sse2");
}

} // namespace quelm::bench::peers

#else

namespace quelm::bench::peers {

std::unique_ptr<JSONLibrary> rapidJSONWithSSE2() {
    return nullptr;
}

} // namespace quelm::bench::peers

#endif
