\echo Use "CREATE EXTENSION latigo_postgis" to load this file. \quit

DO $$
BEGIN
  IF (SELECT extversion = '1.0' FROM pg_extension WHERE extname = 'latigo') THEN
    RAISE EXCEPTION 'latigo_postgis requires version 1.1 of latigo' USING HINT = 'ALTER EXTENSION latigo UPDATE;';
  END IF;
END $$;

-- Points with x the longitude and y the latitude, degrees, as everywhere in PostGIS, or grid coordinates. A z is the height
-- of the functions of latigo; an m stays. An empty point becomes NULL. Volatility as in latigo.

-- Position to grid coordinates with an SRID. With wgs84 the point has SRID 4326, or none.
CREATE FUNCTION latigo_forward(section text, point geometry, srid integer DEFAULT 0, wgs84 boolean DEFAULT false)
  RETURNS geometry LANGUAGE C STABLE STRICT PARALLEL SAFE COST 40 AS 'MODULE_PATHNAME', 'latigo_point_forward';

-- Grid coordinates to a position with an SRID; with wgs84 it is 4326 unless another is given.
CREATE FUNCTION latigo_inverse(section text, point geometry, srid integer DEFAULT 0, wgs84 boolean DEFAULT false)
  RETURNS geometry LANGUAGE C STABLE STRICT PARALLEL SAFE COST 40 AS 'MODULE_PATHNAME', 'latigo_point_inverse';

-- A position on the section's datum to WGS-84, SRID 4326, and the reverse.
CREATE FUNCTION latigo_to_wgs84(section text, point geometry)
  RETURNS geometry LANGUAGE C STABLE STRICT PARALLEL SAFE COST 40 AS 'MODULE_PATHNAME', 'latigo_point_to_wgs84';
CREATE FUNCTION latigo_from_wgs84(section text, point geometry, srid integer DEFAULT 0)
  RETURNS geometry LANGUAGE C STABLE STRICT PARALLEL SAFE COST 40 AS 'MODULE_PATHNAME', 'latigo_point_from_wgs84';

-- Those that return a number are the functions of latigo; the planner replaces them.
CREATE FUNCTION latigo_scale(section text, point geometry, wgs84 boolean DEFAULT false)
  RETURNS float8 STABLE PARALLEL SAFE RETURN latigo_scale(section, ST_Y(point), ST_X(point), wgs84);
CREATE FUNCTION latigo_undulation(section text, point geometry, wgs84 boolean DEFAULT false)
  RETURNS float8 STABLE PARALLEL SAFE RETURN latigo_undulation(section, ST_Y(point), ST_X(point), wgs84);
CREATE FUNCTION latigo_distance(section text, point1 geometry, point2 geometry, rhumb boolean DEFAULT false)
  RETURNS float8 STABLE PARALLEL SAFE
  RETURN latigo_distance(section, ST_Y(point1), ST_X(point1), ST_Y(point2), ST_X(point2), rhumb);
CREATE FUNCTION latigo_azimuth(section text, point1 geometry, point2 geometry, rhumb boolean DEFAULT false)
  RETURNS float8 STABLE PARALLEL SAFE
  RETURN latigo_azimuth(section, ST_Y(point1), ST_X(point1), ST_Y(point2), ST_X(point2), rhumb);
