// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The extension that adds "Compress with Pixpress" to the context menu of Nautilus, which runs
// scripts and reads actions only from a user's own home. What each item says, which files it is for
// and what it starts are in the entries that Thunar reads too.

#include <gio/gdesktopappinfo.h>

#include <array>

extern "C" { // which its header leaves out for the functions of a module
#include <nautilus-extension.h>
}

namespace {

constexpr std::array entries{PIXPRESS_ENTRIES}; // below a data directory

GDesktopAppInfo *read(const char *entry)
{
    g_autoptr(GKeyFile) file = g_key_file_new();
    if (!g_key_file_load_from_data_dirs(file, entry, nullptr, G_KEY_FILE_KEEP_TRANSLATIONS,
                                        nullptr))
        return nullptr;
    return g_desktop_app_info_new_from_keyfile(file);
}

/// Whether the application is for each of these files, and can open them by a path.
bool isFor(GAppInfo *application, GList *files)
{
    const char *const *types = g_app_info_get_supported_types(application);
    for (const GList *each = files; each; each = each->next) {
        auto *file = NAUTILUS_FILE_INFO(each->data);
        g_autofree char *type = nautilus_file_info_get_mime_type(file);
        g_autoptr(GFile) location = nautilus_file_info_get_location(file);
        g_autofree char *path = g_file_get_path(location);
        if (!path || !g_strv_contains(types, type))
            return false;
    }
    return files;
}

void launch(NautilusMenuItem *item, GAppInfo *application)
{
    auto *files = static_cast<GList *>(g_object_get_data(G_OBJECT(item), "files"));
    g_autoptr(GError) error = nullptr;
    if (!g_app_info_launch(application, files, nullptr, &error))
        g_warning("%s: %s", g_app_info_get_name(application), error->message);
}

void freeLocations(gpointer locations)
{
    g_list_free_full(static_cast<GList *>(locations), g_object_unref);
}

NautilusMenuItem *makeItem(const char *entry, GAppInfo *application, GList *files)
{
    auto *item = nautilus_menu_item_new(entry, g_app_info_get_name(application), nullptr, nullptr);
    GList *locations = nullptr;
    for (const GList *each = files; each; each = each->next)
        locations = g_list_prepend(locations,
                                   nautilus_file_info_get_location(NAUTILUS_FILE_INFO(each->data)));
    g_object_set_data_full(G_OBJECT(item), "files", g_list_reverse(locations), freeLocations);
    g_signal_connect_data(
        item, "activate", G_CALLBACK(launch), g_object_ref(application),
        [](gpointer owned, GClosure *) { g_object_unref(owned); }, GConnectFlags());
    return item;
}

GList *itemsFor(NautilusMenuProvider * /*provider*/, GList *files)
{
    GList *items = nullptr;
    for (const char *entry : entries) {
        g_autoptr(GDesktopAppInfo) info = read(entry);
        if (info && isFor(G_APP_INFO(info), files))
            items = g_list_append(items, makeItem(entry, G_APP_INFO(info), files));
    }
    return items;
}

GType menuType = G_TYPE_INVALID;

void registerMenu(GTypeModule *module)
{
    constexpr GTypeInfo type{.class_size = sizeof(GObjectClass),
                             .base_init = nullptr,
                             .base_finalize = nullptr,
                             .class_init = nullptr,
                             .class_finalize = nullptr,
                             .class_data = nullptr,
                             .instance_size = sizeof(GObject),
                             .n_preallocs = 0,
                             .instance_init = nullptr,
                             .value_table = nullptr};
    menuType =
        g_type_module_register_type(module, G_TYPE_OBJECT, "PixpressMenu", &type, GTypeFlags());
    const GInterfaceInfo provider{
        .interface_init =
            [](gpointer provider, gpointer) {
                static_cast<NautilusMenuProviderInterface *>(provider)->get_file_items = itemsFor;
            },
        .interface_finalize = nullptr,
        .interface_data = nullptr};
    g_type_module_add_interface(module, menuType, NAUTILUS_TYPE_MENU_PROVIDER, &provider);
}

} // namespace

// What Nautilus looks for in an extension.

void nautilus_module_initialize(GTypeModule *module)
{
    registerMenu(module);
}

void nautilus_module_shutdown() {}

void nautilus_module_list_types(const GType **types, int *count)
{
    *types = &menuType;
    *count = 1;
}
