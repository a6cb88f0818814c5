#pragma once

#include <utility>

#include "apps/cli/findings.h"

/// A small comparison with one of everything, for the writers.
struct SampleFindings {
    SampleFindings() {
        using bxtexchange::GeometryState;
        structure.reference = {node(L"Gearbox", 0, 3), node(L"Shaft", 5, 4), node(L"Pin", 5, 2)};
        structure.compare = {node(L"Gearbox", 0, 3), node(L"Shaft", 5, 4), node(L"Cover", 5, 1),
                             node(L"Bolt (1)", 5, 0)};
        structure.reference.push_back(node(L"Bolt (1)", 5, 0));
        structure.reference[1].movedFromPath = structure.compare[1].movedFromPath =
            L"Gearbox.Shaft";
        structure.reference[1].movedToPath = structure.compare[1].movedToPath = L"Box.Shaft";
        link(0, 0);
        link(1, 1);
        link(3, 3);
        structure.rows = {{0, 0}, {1, 1}, {3, 3}, {-1, 2}, {2, -1}};

        geometry.lengthToleranceMm = 1e-3;
        geometry.relativeTolerance = 1e-5;
        add(GeometryState::Unchanged, L"Gearbox / Bolt (1)", L"Gearbox / Bolt (1)");
        auto& moved = add(GeometryState::Moved, L"Gearbox / Shaft", L"Gearbox / Shaft");
        moved.displacementMm = {3.0, 4.0, 0.0};
        moved.rotationDeg = 90.0;
        moved.rotationAxis = {0.0, 0.0, 1.0};
        moved.motion = L"moved 5.0 mm along (0.6, 0.8, 0) and turned 90.0 deg about +Z";
        auto& changed = add(GeometryState::Changed, L"Gearbox / Lid", L"Gearbox / Lid v2");
        changed.evidence = bxtexchange::MatchEvidence::SamePlace;
        changed.reference.identity.volumeMm3 = 1000.0;
        changed.compare.identity.volumeMm3 = 1100.0;
        changed.reference.identity.faceCount = 6;
        changed.compare.identity.faceCount = 8;
        add(GeometryState::OnlyInReference, L"Gearbox / Pin", L"");
        add(GeometryState::OnlyInCompare, L"", L"Gearbox / Cover");
        add(GeometryState::NotCompared, L"Gearbox / Scan", L"Gearbox / Scan").note =
            L"it is a mesh";
        geometry.notes = {L"3 curves were not compared"};

        findings.referenceName = "old.step";
        findings.compareName = "new.step";
        findings.structure = &structure;
        findings.geometry = &geometry;
        findings.messages = {"new.step: 2 layers could not be read"};
    }

    static bxtsg::OutcomeNode node(const std::wstring& name, int level, int state) {
        bxtsg::OutcomeNode made;
        made.name = made.displayName = name;
        made.level = level;
        made.state = state;
        made.parent = level > 0 ? 0 : -1;
        return made;
    }

    void link(std::int32_t reference, std::int32_t compare) {
        structure.reference[static_cast<std::size_t>(reference)].peer = compare;
        structure.compare[static_cast<std::size_t>(compare)].peer = reference;
    }

    bxtexchange::GeometryInstance& add(bxtexchange::GeometryState state,
                                       const std::wstring& reference, const std::wstring& compare) {
        bxtexchange::GeometryInstance made;
        made.state = state;
        made.reference.present = !reference.empty();
        made.reference.path = made.reference.product = reference;
        made.compare.present = !compare.empty();
        made.compare.path = made.compare.product = compare;
        const bool matched = made.reference.present && made.compare.present;
        if (matched) made.evidence = bxtexchange::MatchEvidence::Identity;
        geometry.instances.push_back(made);
        return geometry.instances.back();
    }

    bxtsg::ProductStructureOutcome structure;
    bxtsg::SCGeometryResult geometry;
    cli::Findings findings;
};
