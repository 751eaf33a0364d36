#pragma once

#include <string>
#include <string_view>

/// The vendor's addresses on the web and the program's identifier in the store: the one place that
/// knows them. A build for another vendor sets them as cache variables (TESSALY_WEBSITE, …, see
/// CMakeLists.txt). What nobody has set lies on a host that does not exist, and is not offered to
/// users.
namespace tessaly {

/// Whether the address is one that a vendor has set.
[[nodiscard]] bool isSetByVendor(std::string_view address);

/// The home page; ends with a slash.
[[nodiscard]] std::string vendorWebsite();
[[nodiscard]] std::string vendorHelpPage();
[[nodiscard]] std::string vendorSupportPage();
[[nodiscard]] std::string vendorFacebookPage();
[[nodiscard]] std::string vendorTwitterPage();
[[nodiscard]] std::string vendorGooglePage();

/// The program's identifier in the store, in decimal digits.
[[nodiscard]] std::string storeIdentifier();
/// The page of the product with this identifier in the store: a "macappstore:" address that ends
/// with the identifier.
[[nodiscard]] std::string storePage(std::string_view appId);

} // namespace tessaly
