\echo Use "CREATE EXTENSION latigo" to load this file. \quit

-- Grid coordinates, grid units. The height, in the section's vertical unit, is NULL for a position without one.
CREATE TYPE latigo_xy AS (x float8, y float8, height float8);

-- Degrees, north and east positive. The height, in metres, is NULL for a position without one.
CREATE TYPE latigo_position AS (latitude float8, longitude float8, height float8);

-- None is IMMUTABLE: a section's definition, and its grid files, may change. They are read once in a command of the
-- client, unless it uses more than 32 sections, so all are STABLE. Each process of a parallel plan opens the section on its
-- own.

-- Position to grid coordinates: projection, then local grid. With wgs84 the position is WGS-84, and the section's datum
-- shift is applied before; without, it is on the section's own datum.
CREATE FUNCTION latigo_forward(section text, latitude float8, longitude float8, wgs84 boolean DEFAULT false)
  RETURNS latigo_xy LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_forward';

-- The same, and of an ellipsoidal height in metres the height in the section's vertical unit, above its geoid if it has
-- one.
CREATE FUNCTION latigo_forward(section text, latitude float8, longitude float8, height float8,
                               wgs84 boolean DEFAULT false)
  RETURNS latigo_xy LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_forward';

-- Grid coordinates to a position, with wgs84 on WGS-84.
CREATE FUNCTION latigo_inverse(section text, x float8, y float8, wgs84 boolean DEFAULT false)
  RETURNS latigo_position LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_inverse';
CREATE FUNCTION latigo_inverse(section text, x float8, y float8, height float8, wgs84 boolean DEFAULT false)
  RETURNS latigo_position LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_inverse';

-- A position on the section's datum to WGS-84, and the reverse; heights are ellipsoidal, metres.
CREATE FUNCTION latigo_to_wgs84(section text, latitude float8, longitude float8)
  RETURNS latigo_position LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_to_wgs84';
CREATE FUNCTION latigo_to_wgs84(section text, latitude float8, longitude float8, height float8)
  RETURNS latigo_position LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_to_wgs84';
CREATE FUNCTION latigo_from_wgs84(section text, latitude float8, longitude float8)
  RETURNS latigo_position LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_from_wgs84';
CREATE FUNCTION latigo_from_wgs84(section text, latitude float8, longitude float8, height float8)
  RETURNS latigo_position LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_from_wgs84';

-- The point scale factor of the projection at a position.
CREATE FUNCTION latigo_scale(section text, latitude float8, longitude float8, wgs84 boolean DEFAULT false)
  RETURNS float8 LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_scale';

-- The distance between two positions on the section's ellipsoid, in grid units: along the geodesic, by the Gauss
-- mid-latitude formulas, which are meant for lines of up to some hundred kilometres, or along the rhumb line.
CREATE FUNCTION latigo_distance(section text, latitude1 float8, longitude1 float8, latitude2 float8,
                                longitude2 float8, rhumb boolean DEFAULT false)
  RETURNS float8 LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_distance';

-- The sections of the files of latigo.config_files, with what in them is probably not read as intended.
CREATE FUNCTION latigo_sections(OUT section text, OUT file text, OUT warnings text)
  RETURNS SETOF record LANGUAGE C STABLE STRICT PARALLEL SAFE ROWS 100 COST 1000
  AS 'MODULE_PATHNAME', 'latigo_sections';
