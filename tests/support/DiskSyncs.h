// SPDX-License-Identifier: MIT

#pragma once

/// How often the process has had the system bring what it wrote to the disk.
///
/// A program that asks for it gets an fsync() and an fdatasync() that count: whether they are
/// called would otherwise show only on a machine that loses its power.
int diskSyncs();
