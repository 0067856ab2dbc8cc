// SPDX-License-Identifier: MIT
#include "platform/linux/AtomsX11.h"

#include "platform/linux/XcbHandles.h"

#include <utility>

namespace sayloft {

xcb_atom_t AtomsX11::atom(const QByteArray& name) {
    if (const auto known = m_atoms.constFind(name); known != m_atoms.constEnd())
        return *known;
    const xcb_atom_t atom = internAtom(m_connection, name.constData());
    if (atom != XCB_ATOM_NONE)
        remember(atom, name);
    return atom;
}

QByteArray AtomsX11::name(xcb_atom_t atom) {
    if (!m_names.contains(atom))
        learnNames({atom});
    return m_names.value(atom);
}

void AtomsX11::learnNames(const std::vector<xcb_atom_t>& atoms) {
    std::vector<std::pair<xcb_atom_t, xcb_get_atom_name_cookie_t>> asked;
    for (const xcb_atom_t atom : atoms) {
        if (atom != XCB_ATOM_NONE && !m_names.contains(atom))
            asked.emplace_back(atom, xcb_get_atom_name(m_connection, atom));
    }
    for (const auto& [atom, cookie] : asked) {
        const XcbOwned<xcb_get_atom_name_reply_t> reply(
            xcb_get_atom_name_reply(m_connection, cookie, nullptr));
        if (reply) {
            remember(atom, QByteArray(xcb_get_atom_name_name(reply.get()),
                                      xcb_get_atom_name_name_length(reply.get())));
        }
    }
}

void AtomsX11::remember(xcb_atom_t atom, const QByteArray& name) {
    m_atoms.insert(name, atom);
    m_names.insert(atom, name);
}

}  // namespace sayloft
