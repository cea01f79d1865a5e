// TouchCurD: one element of a contour, a line, an arc or a helix in one plain record, with the
// codes of its type and direction and the operations that build, move, reverse, mirror and store
// it.
//
// How an arc is constructed stands in arcs.h; how curves are cut and offset in curve_cuts.h.
#pragma once

#include "trunnion/containers/five_axis_pnt.h"
#include "trunnion/containers/item_base.h"
#include "trunnion/export.h"
#include "trunnion/geometry/arc_directions.h"

// Type codes. The first axis of an arc's plane is the one from which its angles are measured, the
// second the one towards which they run.
inline constexpr int CUR_LINE = 1;       // straight from first to second point
inline constexpr int CUR_ARC = 146;      // arc of MirrorM, SwapDirM and OffsetM; states no plane
inline constexpr int CUR_ARC_XY = 154;   // planar arc, x then y
inline constexpr int CUR_ARC_YZ = 155;   // planar arc, y then z
inline constexpr int CUR_ARC_ZX = 156;   // planar arc, z then x
inline constexpr int CUR_HELIX_XY = 157; // CUR_ARC_XY that rises in z
inline constexpr int CUR_HELIX_YZ = 158; // CUR_ARC_YZ that rises in x
inline constexpr int CUR_HELIX_ZX = 159; // CUR_ARC_ZX that rises in y

// An element of a contour. It owns nothing and belongs to no list of the library; the host chains
// such records.
//
// The types 163 to 166 are lines too; 163, 165 and 166 carry a third point in `centre`. Their
// meaning, and that of the arc types 160 to 162, is the host's. A type of CUR_LINE or from 163 to
// 166 is line-like here, every other one arc-like.
//
// An arc is stored from its lower angle to its higher one, counter-clockwise in its plane, whatever
// the direction of travel. Where the curve starts therefore depends on the direction:
//
//   curve                            start          end
//   line-like                        firstPoint     secondPoint
//   arc-like, CUR_DIR_CCW            firstPoint     secondPoint
//   arc-like, any other direction    secondPoint    firstPoint
//
// Operations do not look at the availability of the curve and, unless told, use x, y and z of a
// point and leave its IV and V.
struct TRUNNION_API TouchCurD {
    int type = SL_DELETED_INT;      // a type code; SL_DELETED_INT or less: no curve
    int direction = SL_DELETED_INT; // of travel: CUR_DIR_CCW or CUR_DIR_CW
    Tq5AxisPntCL centre;            // of the arc; a third point on the types 163, 165, 166
    Tq5AxisPntCL firstPoint;
    Tq5AxisPntCL secondPoint;
    float vector1[3] = {}; // carried for the host: copied and stored, otherwise not read
    float vector2[3] = {};
    float radius = 0.0F;
    float pitch = 0.0F;       // of a helix: rise in one turn, negated on CUR_DIR_CW; see slSetArc
    float firstAngle = 0.0F;  // of the first point, radians
    float secondAngle = 0.0F; // of the second point, radians

    // Every field at its default.
    TouchCurD() = default;
    TouchCurD(const TouchCurD &) = default;
    TouchCurD &operator=(const TouchCurD &) = default;
    virtual ~TouchCurD();

    // Every field back to its default. Always 1.
    int InitialM();

    // TAG_AVAILABLE (31) where the type is above SL_DELETED_INT, else TAG_UNUSED (30).
    int IsAvailableM() const;
    // Writes SL_DELETED_INT to the type; all else stays.
    void DelItemM();

    // Writes the record: type, direction; centre, first and second point with five floats each; the
    // two vectors; radius, pitch, first and second angle. 108 bytes in binary form. Throws the
    // stream's codes; a text stream takes no five-axis points and throws 108 at the first.
    void SaveM(TqIOCL *stream) const;
    // Reads the record. From version 820 on a point has five floats, before that x, y and z only:
    // IV and V then stay as they were, and a text stream can be read. Throws the stream's codes;
    // the fields read until then keep what they got.
    void ReadM(TqIOCL *stream, int version);
    // SaveM, and ReadM with the version number of the stream.
    void FmOutputOzkFileM(TqIOCL *stream) const;
    void FmInputOzkFileM(TqIOCL *stream);

    // Adds a vector to both points, and to the centre unless the type is exactly CUR_LINE.
    void MoveM(const float *const displacement);

    // Mirrors in a coordinate plane through `point`; a null point stands for the origin. `plane` 0
    // mirrors z, 1 mirrors x, 2 mirrors y, any other value does nothing. All types mirror their two
    // points. CUR_ARC mirrors its centre too, toggles its direction (a value other than the two
    // codes stays) and takes new angles: SL_TWO_PI minus the angle for plane 1,
    // slMirrorAngleAboutVerticalAxis for the others; then by the new direction a turn is added to
    // the second angle (CUR_DIR_CCW) or the first (CUR_DIR_CW) where it is below the other, and to
    // both where one is still negative. All other arc types keep centre, direction and angles.
    void MirrorM(const float *const point, int plane);

    // Reverses the curve: exchanges the points, all five coordinates. CUR_ARC exchanges its angles
    // too and toggles its direction (a value other than the two codes stays); all other arc types
    // keep both. Twice restores the curve.
    void SwapDirM();

    // 1 where the curve has shrunk to a point, else 0. Its ends must coincide: Length1M of their
    // difference is below SL_ZERO. Then, by type:
    //
    //   154 to 162       the angles differ by less than SL_ZERO: a full circle is no point
    //   163, 165, 166    centre and first point coincide by the same measure
    //   any other        always
    int IsCurvePntM() const;

    // The x, y and z of the curve start and end. Always 1.
    int GetCurveStartPntM(float *const point) const;
    int GetCurveEndPntM(float *const point) const;
    // Replaces the curve start or end; its IV and V become 0. Always 1.
    int SetCurveStartPntM(const float *const point);
    int SetCurveEndPntM(const float *const point);

    // Rebuilds an arc after its ends have been changed, from its ends, radius and direction;
    // arcs.h.
    //
    //   1              done
    //   2              type is none of 154, 155, 156; nothing written
    //   0              slCalArcCentNear failed: the ends lie further apart than the circle is wide,
    //                  by more than a slack of 0.01 on the radius; only the centre's coordinate
    //                  across the plane is written, from the first point
    int RegArcByStPntAndDir();

    // Shifts the curve sideways by `distance`, towards the side to which `side` points;
    // curve_cuts.h.
    //
    //   1, 164     moves as a whole along the part of `side` at a right angle to the line; stays
    //              where that part is not longer than SL_ZERO
    //   CUR_ARC    stays concentric: grows by `distance` where `side` points outwards at the first
    //              point, shrinks where it points inwards, stays where slSign of their dot product
    //              is 0 or the radius is 0. Angles, centre and direction stay. Nothing guards the
    //              radius: shrunk past 0, it is negative and the points have crossed the centre
    //   others     stay
    void OffsetM(float distance, const float *const side);
};

// Writes type and the x, y, z of first and second point; direction and all else stay. Always 1.
TRUNNION_API int slSetLine(TouchCurD *curve, int type, float *const first, float *const second);

// Writes type, direction, the x, y, z of the three points as they are given, without an exchange by
// direction, and the angles; `radius` goes to the radius and to the pitch. Always 1.
TRUNNION_API int slSetArc(TouchCurD *curve, int type, int direction, float *const first,
                          float *const centre, float *const second, float radius, float firstAngle,
                          float secondAngle);

// GetCurveStartPntM and GetCurveEndPntM under two names each.
TRUNNION_API int slGetStartPnt(const TouchCurD *curve, float *const point);
TRUNNION_API int slGetCurveStartPnt(const TouchCurD *curve, float *const point);
TRUNNION_API int slGetCurveEndPnt(const TouchCurD *curve, float *const point);
TRUNNION_API int GetCurveEndPnt(const TouchCurD *curve, float *const point);

// Write x, y, z of the curve start or end; unlike SetCurveStartPntM they leave IV and V. Always 1.
TRUNNION_API int slSetCurveStartPnt(TouchCurD *curve, const float *const point);
TRUNNION_API int slSetCurveEndPnt(TouchCurD *curve, const float *const point);

// The same, but a curve that is a point stays one: where |dx| + |dy| + |dz| between first and
// second point is below SL_ZERO, both points take x, y, z, whatever the type, and the result is 0.
// Otherwise 1.
TRUNNION_API int slSetStartPnt(TouchCurD *curve, const float *const point);
TRUNNION_API int slSetEndPnt(TouchCurD *curve, const float *const point);
