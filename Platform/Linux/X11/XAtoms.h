#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

namespace tarvex {

/// Interns the atoms of those names with one wait, each for its member. All others are 0.
template <typename Atoms>
[[nodiscard]] Atoms
makeAtoms(XConnection& connection,
          std::initializer_list<std::pair<xcb_atom_t Atoms::*, std::string_view>> namesOfMembers) {
    std::vector<std::string_view> names;
    names.reserve(namesOfMembers.size());
    for (const auto& [member, name] : namesOfMembers) {
        names.push_back(name);
    }
    connection.internAtoms(names);
    Atoms atoms{};
    for (const auto& [member, name] : namesOfMembers) {
        atoms.*member = connection.atom(name);
    }
    return atoms;
}

/// Whether the atom is in the list, such as that of a property.
[[nodiscard]] inline bool isAmong(const std::vector<std::uint32_t>& atoms, xcb_atom_t atom) {
    return std::find(atoms.begin(), atoms.end(), atom) != atoms.end();
}

} // namespace tarvex
