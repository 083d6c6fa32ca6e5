#pragma once

class QString;
class TracedHost;
struct Reply;

/// Reads the whole subtree under a key, in the order of its listings, into `reply`: the nodes with
/// their values, and a drawing of them. What a listing leaves out is left out. For a terminal the drawing
/// says where each value comes from (see ValueSource.h) and what is pending.
///
/// The reply's code is that of the key itself; a part that cannot be read is shown without a value.
void readKeyTree(TracedHost& host, QString const& key, Reply& reply);
