#pragma once

#include "screens/KORVENQuicklookController.hpp"

#include <memory>
#include <utility>

namespace tessaly {

/// Makes controllers that are not the shared one.
struct OwnQuicklookController {
    [[nodiscard]] static std::unique_ptr<KORVENQuicklookController> open(const Services &services)
    {
        return std::unique_ptr<KORVENQuicklookController>(new KORVENQuicklookController(services));
    }

    /// One that finds these entries in whatever folder.
    [[nodiscard]] static std::unique_ptr<KORVENQuicklookController>
    open(const Services &services, std::vector<PreviewFolderEntry> entries)
    {
        return std::unique_ptr<KORVENQuicklookController>(new KORVENQuicklookController(
            services, [entries = std::move(entries)](const std::string &) { return entries; }));
    }
};

} // namespace tessaly
