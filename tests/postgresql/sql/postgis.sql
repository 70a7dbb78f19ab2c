-- Points of PostGIS: x is the longitude. They are what the functions of numbers return, whatever form a point has.
SET client_min_messages = warning;
CREATE EXTENSION postgis;
CREATE EXTENSION latigo_postgis;
\pset null NULL
\set VERBOSITY terse
CREATE TABLE places (id serial, place geometry);
INSERT INTO places (place) VALUES ('SRID=4326;POINT(3 44)'), ('SRID=4326;POINT(3.5 45)'), ('POINT(4 45)'), ('POINT Z (4 45 100)'),
  ('POINT M (4 45 7)'), ('SRID=4326;POINT ZM (4 45 100 7)'), ('POINT EMPTY'), (NULL), ('SRID=4326;POINT(3.5 45)');

SELECT id, ST_SRID(latigo_forward('Utm31', place, 32631)) AS srid, ST_Zmflag(latigo_forward('Utm31', place)) AS zm,
       ST_X(place) IS NULL OR ST_Equals(latigo_forward('Utm31', place), ST_MakePoint(f.x, f.y)) AS same_xy,
       ST_Z(latigo_forward('Heights', place)) IS NOT DISTINCT FROM
         (latigo_forward('Heights', ST_Y(place), ST_X(place), ST_Z(place))).height AS same_height
  FROM places LEFT JOIN LATERAL latigo_forward('Utm31', ST_Y(place), ST_X(place)) f ON true ORDER BY id;
SELECT id, ST_SRID(back) AS srid, ST_NDims(back) AS dimensions, ST_M(back) AS m,
       ST_X(place) IS NULL OR (abs(ST_X(place) - ST_X(back)) < 5e-8 AND abs(ST_Y(place) - ST_Y(back)) < 5e-8) AS closed,
       abs(ST_Z(place) - ST_Z(back)) < 1e-5 AS height_closed
  FROM places, LATERAL (SELECT latigo_inverse('Heights', latigo_forward('Heights', place, 0, true), wgs84 => true) AS back) b
  ORDER BY id;

-- By algebra: the grid's shift to WGS-84 is 1.5 and -2.5 seconds.
SELECT ST_SRID(p) AS srid, round(((ST_Y(p) - 45) * 3600)::numeric, 6) AS latitude, round(((ST_X(p) - 3) * 3600)::numeric, 6) AS longitude
  FROM latigo_to_wgs84('Shifted', ST_MakePoint(3, 45)) p;
SELECT ST_SRID(p) AS srid, round(((ST_Y(p) - 45) * 3600)::numeric, 3) AS latitude, round(((ST_X(p) - 3) * 3600)::numeric, 3) AS longitude
  FROM latigo_from_wgs84('Shifted', ST_SetSRID(ST_MakePoint(3, 45), 4326), 4231) p;
SELECT latigo_scale('Utm31', ST_MakePoint(3, 0)) AS scale, latigo_undulation('Heights', ST_MakePoint(3, 45)) AS undulation,
       round(latigo_distance('Utm31', ST_MakePoint(0, 0), ST_MakePoint(0.5, 0))::numeric, 3) AS distance,
       round(latigo_azimuth('Utm31', ST_MakePoint(0, 0), ST_MakePoint(0.5, 0))::numeric, 6) AS azimuth;

-- Failures: a point that is not on WGS-84, one on the fast road and after it, another geometry, a failed point.
SELECT latigo_forward('Utm31', 'SRID=32631;POINT(3 1)'::geometry, wgs84 => true);
SELECT latigo_forward('Utm31', ST_SetSRID(ST_MakePoint(3, 1), 32631), 0, n = 3) FROM generate_series(1, 3) n;
SELECT latigo_from_wgs84('Shifted', 'SRID=2154;POINT(3 45)'::geometry);
SELECT latigo_forward('Utm31', 'LINESTRING(3 1, 3 2)'::geometry);
SELECT latigo_forward('Utm31', ST_MakePoint(3, 90));
SELECT latigo_forward('Utm31', ST_MakePoint('NaN', 3));
SET latigo.on_error = 'null';
SELECT latigo_forward('Utm31', ST_MakePoint(3, 90)), latigo_forward('Utm31', ST_MakePoint(3, 89, 'NaN')),
       latigo_forward('Utm31', ST_MakePoint('NaN', 3)), latigo_distance('Utm31', ST_MakePoint(0, 91), ST_MakePoint(0, 0));
RESET latigo.on_error;

-- The same system by PROJ: within 0.1 mm in the zone.
SELECT count(*) AS points, count(*) FILTER (WHERE ST_Distance(latigo_forward('Utm31', p, 32631, true), ST_Transform(p, 32631)) < 1e-4) AS agree
  FROM (SELECT ST_SetSRID(ST_MakePoint(3 + n % 7 - 3, 1.7 * (n % 51 - 25)), 4326) AS p FROM generate_series(1, 1000) n) AS zone;
