#include "app/window/VendorUrls.hpp"

#include <QUrl>

#include <gtest/gtest.h>

#include <algorithm>

namespace tessaly {
namespace {

TEST(VendorUrls, areAddressesOfTheWeb)
{
    for (const std::string &page :
         {vendorWebsite(), vendorHelpPage(), vendorSupportPage(), vendorFacebookPage(),
          vendorTwitterPage(), vendorGooglePage()}) {
        const QUrl url(QString::fromStdString(page), QUrl::StrictMode);
        EXPECT_TRUE(url.isValid()) << page;
        EXPECT_EQ(url.scheme(), QStringLiteral("https")) << page;
        EXPECT_FALSE(url.host().isEmpty()) << page;
    }
}

TEST(VendorUrls, helpAndSupportLieOnTheWebsite)
{
    EXPECT_EQ(vendorHelpPage(), vendorWebsite() + "tessalyhelp.html");
    EXPECT_EQ(vendorSupportPage(), vendorWebsite() + "support.html");
}

TEST(VendorUrls, theStorePageEndsWithTheIdentifier)
{
    const std::string own = storeIdentifier();
    EXPECT_FALSE(own.empty());
    EXPECT_TRUE(std::all_of(own.begin(), own.end(), [](char c) { return c >= '0' && c <= '9'; }));
    for (const std::string &id : {own, std::string("42")}) {
        EXPECT_TRUE(storePage(id).starts_with("macappstore:")) << id;
        EXPECT_TRUE(storePage(id).ends_with(id)) << id;
    }
}

} // namespace
} // namespace tessaly
