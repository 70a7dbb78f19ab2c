\echo Use "ALTER EXTENSION latigo UPDATE TO '1.1'" to load this file. \quit

-- The azimuth at the first of two positions towards the second, degrees clockwise from north, 0 to 360; along the line
-- that latigo_distance measures.
CREATE FUNCTION latigo_azimuth(section text, latitude1 float8, longitude1 float8, latitude2 float8, longitude2 float8,
                               rhumb boolean DEFAULT false)
  RETURNS float8 LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_azimuth';

-- The undulation of the section's geoid, in the unit of its grid file; 0 for a section without one. With wgs84 the
-- position is WGS-84, and so is the geoid's ellipsoid.
CREATE FUNCTION latigo_undulation(section text, latitude float8, longitude float8, wgs84 boolean DEFAULT false)
  RETURNS float8 LANGUAGE C STABLE STRICT PARALLEL SAFE COST 20 AS 'MODULE_PATHNAME', 'latigo_undulation';

-- The version of the library in the module, for instance 13.2.
CREATE FUNCTION latigo_version()
  RETURNS text LANGUAGE C STABLE STRICT PARALLEL SAFE AS 'MODULE_PATHNAME', 'latigo_version';

-- Closes the handles of this session's process, with their grid files, and forgets the configuration files. The next call
-- opens them again.
CREATE FUNCTION latigo_close()
  RETURNS void LANGUAGE C VOLATILE STRICT PARALLEL RESTRICTED AS 'MODULE_PATHNAME', 'latigo_close';
