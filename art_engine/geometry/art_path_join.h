#pragma once

#include <cmath>

// The body of JoinPath, which takes any AGG vertex source; the source is rewound at path 0.
template <class VertexSource> void JoinPath(art_path &Target, VertexSource &Source)
{
    double X = 0;
    double Y = 0;
    Source.rewind(0);
    unsigned Command = Source.vertex(&X, &Y);
    if (agg::is_stop(Command))
        return;
    agg::vertex_block_storage<double> &Vertices = Target.vertices();
    double LastX = 0;
    double LastY = 0;
    bool TargetOpen = agg::is_vertex(Target.last_vertex(&LastX, &LastY));
    if (!TargetOpen || !agg::is_vertex(Command)) {
        Vertices.add_vertex(X, Y, Command);
    } else {
        // A first point on the target's last one would be a zero-length edge.
        double DX = X - LastX;
        double DY = Y - LastY;
        if (std::sqrt(DX * DX + DY * DY) > 1e-14)
            Vertices.add_vertex(X, Y, agg::path_cmd_line_to);
    }
    while (!agg::is_stop(Command = Source.vertex(&X, &Y)))
        Vertices.add_vertex(X, Y, agg::is_move_to(Command) ? unsigned(agg::path_cmd_line_to) : Command);
}
