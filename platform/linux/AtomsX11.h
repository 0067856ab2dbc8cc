// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>

#include <xcb/xcb.h>

#include <vector>

namespace sayloft {

/// Names of atoms and back, asked of the server once each. One thread.
class AtomsX11 {
public:
    explicit AtomsX11(xcb_connection_t* connection) : m_connection(connection) {}

    /// XCB_ATOM_NONE when the server is gone.
    [[nodiscard]] xcb_atom_t atom(const QByteArray& name);

    /// Empty for something that is no atom.
    [[nodiscard]] QByteArray name(xcb_atom_t atom);

    /// Asks for all names in one round trip, so that `name` has them at hand.
    void learnNames(const std::vector<xcb_atom_t>& atoms);

private:
    void remember(xcb_atom_t atom, const QByteArray& name);

    xcb_connection_t* m_connection;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    QHash<xcb_atom_t, QByteArray> m_names;
};

}  // namespace sayloft
