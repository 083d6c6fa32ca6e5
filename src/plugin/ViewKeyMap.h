// SPDX-License-Identifier: MIT

#pragma once

class ActionKit;
class Vantora;

/// Registers every key of the view with the kit: the registry keys and the setting classes behind
/// it, the commit of terminal sessions, the apply of USB.
///
/// @param backend  for the display settings; must outlive the kit.
void registerViewKeys(ActionKit& kit, Vantora& backend);
