#pragma once

class ActionKit;
class Vantora;

/// Registers every key of the view with the kit: the registry key, the script-only areas' actions
/// and the setting classes behind it.
///
/// @param backend  for the display settings; must outlive the kit.
void registerViewKeys(ActionKit& kit, Vantora& backend);
