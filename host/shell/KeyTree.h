#pragma once

class QString;
class Vantora;
struct Reply;

/// Reads the whole subtree under a key, in the order of its listings, into `reply`: the nodes with
/// their values, and a drawing of them. What a listing leaves out is left out.
///
/// The reply's code is that of the key itself; a part that cannot be read is shown without a value.
void readKeyTree(Vantora& host, QString const& key, Reply& reply);
