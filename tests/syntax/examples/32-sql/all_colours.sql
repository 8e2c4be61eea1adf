-- Customers with more than five orders in 2023.
SELECT c.customer_id, c.last_name, COUNT(*) AS orders
FROM customer c
JOIN rental r ON r.customer_id = c.customer_id
WHERE r.rental_date >= '2023-01-01'   -- from January
/* only active customers
   are counted */
  AND c.active = 1
GROUP BY c.customer_id, c.last_name
HAVING COUNT(*) > 5
ORDER BY orders DESC;
