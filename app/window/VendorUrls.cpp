#include "app/window/VendorUrls.hpp"

namespace tessaly {

bool isSetByVendor(std::string_view address)
{
    // By the host alone: each address is set by itself when the program is configured, and those
    // that are not keep this placeholder.
    return address.find(TESSALY_UNSET_HOST) == std::string_view::npos;
}

std::string vendorWebsite()
{
    return TESSALY_WEBSITE;
}

std::string vendorHelpPage()
{
    // The website ends with a slash.
    return vendorWebsite() + "tessalyhelp.html";
}

std::string vendorSupportPage()
{
    return vendorWebsite() + "support.html";
}

std::string vendorFacebookPage()
{
    return TESSALY_FACEBOOK_PAGE;
}

std::string vendorTwitterPage()
{
    return TESSALY_TWITTER_PAGE;
}

std::string vendorGooglePage()
{
    return TESSALY_GOOGLE_PAGE;
}

std::string storeIdentifier()
{
    return TESSALY_STORE_ID;
}

std::string storePage(std::string_view appId)
{
    return TESSALY_STORE_PAGES + std::string(appId);
}

} // namespace tessaly
