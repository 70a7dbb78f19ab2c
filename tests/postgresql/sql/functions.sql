-- The functions, by published values and by algebra.
CREATE EXTENSION latigo;
\pset null NULL

-- Published: Ordnance Survey, the water tower at Caister, given to 1 mm.
CREATE VIEW caister AS SELECT 52 + 39 / 60.0 + 27.2531 / 3600 AS latitude, 1 + 43 / 60.0 + 4.5177 / 3600 AS longitude;
SELECT round(x::numeric, 3) AS x, round(y::numeric, 3) AS y, height
  FROM caister, latigo_forward('NationalGrid', latitude, longitude);
SELECT abs(p.latitude - c.latitude) < 1e-8 AS latitude, abs(p.longitude - c.longitude) < 2e-8 AS longitude, height
  FROM caister c, latigo_inverse('nationalgrid', 651409.903, 313177.270) p;

-- By algebra: the origin, and the scale factor there.
SELECT * FROM latigo_forward('Utm31', 0, 3);
SELECT * FROM latigo_forward('Utm31', 0, -357);
SELECT * FROM latigo_inverse('Utm31', 500000, 0);
SELECT latigo_scale('Utm31', 0, 3);

-- By algebra: the grid file's shift is 1.5 and -2.5 seconds to WGS-84. The height stays to the centimetre: a degree of
-- latitude on the ellipsoid is the same there.
SELECT round(((latitude - 45) * 3600)::numeric, 6) AS latitude, round(((longitude - 3) * 3600)::numeric, 6) AS longitude, height
  FROM latigo_to_wgs84('Shifted', 45, 3);
\set VERBOSITY terse
SELECT round(((latitude - 45) * 3600)::numeric, 6) AS latitude, round(((longitude - 3) * 3600)::numeric, 6) AS longitude,
       round(height::numeric, 1) AS height
  FROM latigo_from_wgs84('Shifted', 45, 3, 100);
\set VERBOSITY default
SELECT a.x = b.x AND a.y = b.y AS shifted_before
  FROM latigo_from_wgs84('Shifted', 45, 4) p, latigo_forward('Shifted', p.latitude, p.longitude) a,
       latigo_forward('Shifted', 45, 4, wgs84 => true) b;
SELECT a.x = b.x AND a.y = b.y AS not_shifted
  FROM latigo_forward('Shifted', 45, 4) a, latigo_forward('Utm31', 45, 4, false) b;

-- By algebra: the undulation is 45.5 everywhere, the vertical unit half a metre, the constant of the next section 45.5.
SELECT height FROM latigo_forward('Heights', 45, 3, 100);
SELECT round(height::numeric, 6) AS height FROM latigo_inverse('Heights', 500000, 4982950, 109);
SELECT round(height::numeric, 6) AS height FROM latigo_forward('Heights', 45, 3, 100, true);
SELECT round(height::numeric, 6) AS height FROM latigo_inverse('Heights', 500000, 4982950, 109, true);
SELECT height FROM latigo_forward('Constant', 45, 3, 100);

-- By algebra: a degree of the equator in metres, and half of it in feet; the longitude difference is wrapped.
SELECT round(latigo_distance('Utm31', 0, 0, 0, 1, true)::numeric, 6) = round((6378137 * pi() / 180)::numeric, 6) AS rhumb,
       round(latigo_distance('Feet', 0, 179.75, 0, -179.75)::numeric, 5) = round((6378137 * pi() / 360 / 0.3048)::numeric, 5) AS feet;

-- NULL is NULL, for each argument.
SELECT latigo_forward(NULL, 1, 2), latigo_forward('Utm31', NULL, 2), latigo_forward('Utm31', 1, NULL),
       latigo_forward('Utm31', 1, 2, NULL::float8), latigo_forward('Utm31', 1, 2, NULL::boolean),
       latigo_inverse(NULL, 1, 2), latigo_to_wgs84('Utm31', NULL, 1), latigo_scale('Utm31', 1, NULL),
       latigo_distance('Utm31', 1, 2, 3, NULL);

-- Sections change from row to row, also more of them than handles are kept.
CREATE TABLE systems AS SELECT section FROM latigo_sections() WHERE warnings IS NULL
  AND section NOT IN ('NoGrid', 'NoGeoid', 'Escape', 'Absolute', 'Cone', 'Unknown');
\set VERBOSITY terse
SELECT count(*) > 32 AS many, count(*) = count(x) AS all_convert
  FROM (SELECT (latigo_forward(section, 45, CASE section WHEN 'Utm31' THEN 3 ELSE 4 END)).x
        FROM systems, generate_series(1, 3) ORDER BY generate_series) AS each;

-- The first file with a section counts; what is probably not read as intended is listed.
SELECT count(*) AS national_grids, min(regexp_replace(file, '.*/', '')) AS file
  FROM latigo_sections() WHERE lower(section) = 'nationalgrid';
SELECT section, regexp_replace(file, '.*/', '') AS file, regexp_replace(warnings, '^.*first.ini:[0-9]*', '') AS warnings
  FROM latigo_sections() WHERE section IN ('Second', 'Grüße', 'Comma') ORDER BY section COLLATE "C";
SELECT x FROM latigo_forward('Grüße', 0, 3);

-- A section's definition can change, so no function is IMMUTABLE, and no index or generated column can call one.
SELECT provolatile, proparallel, proisstrict, count(*) FROM pg_proc WHERE proname LIKE 'latigo\_%' GROUP BY 1, 2, 3 ORDER BY 1;
CREATE TABLE stations (latitude float8, longitude float8);
CREATE INDEX ON stations (((latigo_forward('Utm31', latitude, longitude)).x));
ALTER TABLE stations ADD x float8 GENERATED ALWAYS AS ((latigo_forward('Utm31', latitude, longitude)).x) STORED;
