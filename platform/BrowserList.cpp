// SPDX-License-Identifier: MIT
#include "platform/BrowserList.h"

#include "platform/GioPointers.h"

#include <QFile>

#include <algorithm>
#include <cstring>

namespace qovelmor {

namespace {

bool isBrowser(GAppInfo *application)
{
    if (!g_app_info_should_show(application) || !g_app_info_supports_uris(application))
        return false;
    const char **types = g_app_info_get_supported_types(application);
    for (; types != nullptr && *types != nullptr; ++types) {
        if (std::strcmp(*types, "x-scheme-handler/http") == 0)
            return true;
    }
    return false;
}

} // namespace

std::vector<BrowserEntry> installedBrowsers()
{
    std::vector<BrowserEntry> browsers;
    // The entries themselves are asked: the cache by type is only as fresh as the last installer
    // left it.
    GList *const applications = g_app_info_get_all();
    for (GList *at = applications; at != nullptr; at = at->next) {
        const GioPointer<GAppInfo> application(G_APP_INFO(at->data));
        const char *path =
            isBrowser(application.get())
                ? g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(application.get()))
                : nullptr;
        if (path != nullptr)
            browsers.push_back({QString::fromUtf8(g_app_info_get_display_name(application.get())),
                                QFile::decodeName(path)});
    }
    g_list_free(applications);
    std::sort(browsers.begin(), browsers.end(), [](const BrowserEntry &a, const BrowserEntry &b) {
        const int order = a.name.localeAwareCompare(b.name);
        return order != 0 ? order < 0 : a.desktopFile < b.desktopFile;
    });
    return browsers;
}

} // namespace qovelmor
