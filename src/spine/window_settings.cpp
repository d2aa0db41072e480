// The main window's size and place, kept in the registry from one run to the next. Twips.

#include <algorithm>
#include <cmath>

#include "spine/frmMain.h"
#include "storage/clsRegistry.h"

namespace torvane {
namespace {

constexpr TextView kSettingsKey = u"Software\\Halvex\\Torvane";

constexpr Twips kLeastHeight{4905};
constexpr Twips kLeastWidth{8160};
constexpr Twips kLeastEdge{10};

clsRegistry SettingsKey() {
  clsRegistry registry;
  registry.ClassKey(kCurrentUser);
  registry.SectionKey(Text(kSettingsKey));
  registry.ValueType(kNumberType);
  return registry;
}

Twips Read(clsRegistry& registry, const Text& name) {
  registry.ValueKey(name);
  return {static_cast<double>(AsInteger(registry.Value()))};
}

void Write(clsRegistry& registry, const Text& name, std::int32_t number) {
  registry.ValueKey(name);
  registry.Value(number);
}

// What lies below the limit (a minimized window far off the screen, say) is kept out of the store.
void WriteLimited(clsRegistry& registry, const Text& name, Twips length, Twips least) {
  Write(registry, name, static_cast<std::int32_t>(std::lround(std::max(length, least).count)));
}

}  // namespace

void frmMain::LoadWindowSettings() {
  clsRegistry registry = SettingsKey();
  if (!registry.KeyExists()) SaveDefaultSettings();
  registry.ValueKey(u"State");
  const std::int32_t state = AsInteger(registry.Value());
  if (state == static_cast<std::int32_t>(WindowState::Maximized)) {
    State(WindowState::Maximized);
    return;
  }
  // A program that was closed minimized comes back at its design size and place.
  if (state == static_cast<std::int32_t>(WindowState::Minimized)) {
    State(WindowState::Normal);
    return;
  }
  const Twips width = Read(registry, u"Main Width");
  const Twips height = Read(registry, u"Main Height");
  const Twips top = Read(registry, u"Main Top");
  const Twips left = Read(registry, u"Main Left");
  Move(left, top, width, height);
}

void frmMain::SaveDefaultSettings() {
  clsRegistry registry = SettingsKey();
  Write(registry, u"State", 0);
  Write(registry, u"Main Height", 7125);
  Write(registry, u"Main Width", 9960);
  Write(registry, u"Main Top", 0);
  Write(registry, u"Main Left", 0);
}

// The state is written last: if the writes stop half-way it says normal, and the next start takes
// the geometry that is there.
void frmMain::SaveWindowSettings() const {
  clsRegistry registry = SettingsKey();
  Write(registry, u"State", 0);
  WriteLimited(registry, u"Main Height", Height(), kLeastHeight);
  WriteLimited(registry, u"Main Width", Width(), kLeastWidth);
  WriteLimited(registry, u"Main Left", Left(), kLeastEdge);
  WriteLimited(registry, u"Main Top", Top(), kLeastEdge);
  Write(registry, u"State", static_cast<std::int32_t>(State()));
}

}  // namespace torvane
