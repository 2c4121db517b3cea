// SPDX-License-Identifier: MIT
// Tells what a site has set otherwise than the maker, looks a beam up, and keeps what was calculated with
// it: the environment tree, a table of profiles, the calculator and an INI file by the layer for C++.
//
//   site_report MAKER.env SITE.env PROFILES.pro RESULTS.ini
#include <iostream>
#include <string>

#include "kv.hpp"

namespace {

int fail(const std::string &what, int code) {
    std::cerr << "site_report: " << what << " (" << code << ")\n";
    return 1;
}

}  // namespace

int main(int argc, char **argv) {
    if (argc != 5) return fail("MAKER.env SITE.env PROFILES.pro RESULTS.ini are wanted", argc - 1);
    const kv::trace function("main");

    kv::env maker(1);
    kv::env site(2, maker.get());  // what it does not say is the maker's
    if (const int code = maker.read_file(argv[1]); code != ENV_OK) return fail(argv[1], code);
    if (const int code = site.read_file(argv[2]); code != ENV_OK) return fail(argv[2], code);

    for (const kv::element &section : maker.sections()) {
        for (const kv::element &each : maker.subenv(section.name).elements("")) {
            const kv::result<std::string> own = site.get<std::string>(section.name, each.name);
            if (own.code() == 2) std::cout << section.name << ", " << each.name << ": " << *own << '\n';
        }
    }

    kv::table profiles(argv[3], {"A", "Iy"});
    if (!profiles) return fail(argv[3], -1);
    const kv::row *const beam = profiles.find("HEB200");
    if (beam == nullptr) return fail("no HEB 200", -1);
    const kv::calculation inertia = kv::calculate("2*" + std::to_string(beam->values[1]));
    if (!inertia) return fail(inertia.message(), inertia.code());
    std::cout << "two " << beam->name << ": " << *inertia << " cm4\n";

    kv::ini results(argv[4]);
    if (results.put("Beam", "Iy", *inertia) != INI_OK || !results.save()) return fail(argv[4], -1);
    return 0;
}
