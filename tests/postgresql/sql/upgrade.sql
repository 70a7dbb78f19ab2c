-- A database with version 1.0 becomes the same as a new one, and what depends on the functions stays.
DROP EXTENSION latigo CASCADE;
CREATE EXTENSION latigo VERSION '1.0';
SELECT latigo_version();
\set VERBOSITY terse
CREATE EXTENSION latigo_postgis CASCADE;
\set VERBOSITY default
CREATE VIEW converted AS SELECT (latigo_forward('Utm31', 0, 3)).x;
CREATE TABLE kept AS SELECT latigo_forward('Utm31', 0, 3, 7) AS xy;
CREATE VIEW members AS
  SELECT pg_describe_object(classid, objid, 0) AS member, p.provolatile, p.proparallel, p.proisstrict, p.procost, p.prosrc
  FROM pg_depend d LEFT JOIN pg_proc p ON p.oid = d.objid AND d.classid = 'pg_proc'::regclass
  WHERE deptype = 'e' AND refobjid = (SELECT oid FROM pg_extension WHERE extname = 'latigo');
CREATE TABLE before AS SELECT * FROM members;
ALTER EXTENSION latigo UPDATE;
SELECT extversion FROM pg_extension WHERE extname = 'latigo';
SELECT x FROM converted;
SELECT (xy).x, (xy).height FROM kept;
SELECT member FROM members EXCEPT SELECT member FROM before ORDER BY 1;
SELECT count(*) AS lost FROM (SELECT * FROM before EXCEPT SELECT * FROM members) AS lost;
CREATE TABLE upgraded AS SELECT * FROM members;
DROP VIEW converted;
DROP TABLE kept;
DROP EXTENSION latigo;
CREATE EXTENSION latigo;
SELECT count(*) AS differences FROM
  ((SELECT * FROM members EXCEPT SELECT * FROM upgraded) UNION ALL (SELECT * FROM upgraded EXCEPT SELECT * FROM members)) AS other;

-- The functions of version 1.1, by algebra: east on the equator, west across the meridian of 180 degrees, the constant
-- grid of undulations, and the constant alone.
SELECT round(latigo_azimuth('Utm31', 0, 0, 0, 0.5)::numeric, 9) AS east, latigo_azimuth('Utm31', 10, -179.5, 10, 179.5, true) AS west,
       round(latigo_azimuth('Utm31', 0, 0, 0.5, 0)::numeric, 9) AS north;
SELECT latigo_undulation('Heights', 45, 3), latigo_undulation('Heights', 45, 3, true), latigo_undulation('Constant', -45, 3),
       latigo_undulation('Utm31', 45, 3);
SELECT latigo_version() ~ '^[0-9]+\.[0-9]+$' AS version;
SELECT latigo_close();
SELECT latigo_close();
SELECT x FROM latigo_forward('Utm31', 0, 3);
DO $$
DECLARE text_of_names text := '';
BEGIN
  -- The expression is compiled once, with the section as a parameter.
  FOR i IN 1..3 LOOP
    text_of_names := text_of_names || (latigo_forward(('{Utm31,Feet,Utm31}'::text[])[i], 0, 3)).x || ' ';
    IF i = 2 THEN PERFORM latigo_close(); END IF;
  END LOOP;
  RAISE NOTICE '%', text_of_names;
END $$;
