// Any bytes as a property list: they give an error or a value, and a value can be written and read
// again.

#include "engine/archive/PropertyList.hpp"
#include "tests/fakes/MemorySink.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool isTrue)
{
    if (!isTrue) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto value = tessaly::archive::readPropertyList(std::as_bytes(std::span(data, size)));
    if (!value) {
        require(!value.error().message.empty());
        return 0;
    }
    tessaly::MemorySink sink;
    require(tessaly::archive::writePropertyList(value.value(), sink).hasValue());
    const auto again = tessaly::archive::readPropertyList(sink.bytes());
    require(again && again.value() == value.value());
    return 0;
}
